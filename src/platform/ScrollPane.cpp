#include "platform/ScrollPane.h"

#include <QApplication>
#include <QKeyEvent>

ScrollPane::ScrollPane(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        if (now && widget() && widget()->isAncestorOf(now))
            BringIntoView(*now);
    });
}

/// Of what is larger than the pane the beginning.
void ScrollPane::BringIntoView(const QWidget &control)
{
    constexpr int Around = 30;
    const QRect part(control.mapTo(widget(), QPoint()),
                     control.size().boundedTo(viewport()->size()));
    ensureVisible(part.center().x(), part.center().y(), part.width() / 2 + Around,
                  part.height() / 2 + Around);
}

QSize ScrollPane::sizeHint() const
{
    return widget() ? widget()->sizeHint() : QScrollArea::sizeHint();
}

void ScrollPane::keyPressEvent(QKeyEvent *event)
{
    const bool isPage = event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown;
    if (isPage || hasFocus())
        QScrollArea::keyPressEvent(event);
    else
        event->ignore();
}
