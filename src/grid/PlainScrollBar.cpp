#include "grid/PlainScrollBar.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOptionSlider>

bool PlainScrollBar::event(QEvent *event)
{
    const bool isDone = QScrollBar::event(event);
    // Styles take this away; what lies below the bar would be painted with each change of it.
    if (event->type() == QEvent::Polish)
        setAttribute(Qt::WA_OpaquePaintEvent);
    return isDone;
}

void PlainScrollBar::paintEvent(QPaintEvent *)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window).darker(108));
    for (const auto part :
         {QStyle::SC_ScrollBarSubLine, QStyle::SC_ScrollBarAddLine, QStyle::SC_ScrollBarSlider}) {
        const bool isPressed = isSliderDown() && part == QStyle::SC_ScrollBarSlider;
        const QRect place = style()->subControlRect(QStyle::CC_ScrollBar, &option, part, this);
        painter.fillRect(place, palette().color(QPalette::Window).darker(150));
        painter.fillRect(place.adjusted(1, 1, -1, -1),
                         palette().color(QPalette::Button).darker(isPressed ? 115 : 100));
        if (part != QStyle::SC_ScrollBarSlider)
            DrawArrow(painter, place.center(), part == QStyle::SC_ScrollBarSubLine);
    }
}

/// A triangle of lines, each two points wider than the one before.
void PlainScrollBar::DrawArrow(QPainter &painter, const QPoint &center, bool isUp) const
{
    constexpr int Height = 4;
    for (int line = 0; line < Height; ++line)
        painter.fillRect(center.x() - line, center.y() + (isUp ? line - 1 : 2 - line), 2 * line + 1,
                         1, palette().color(QPalette::ButtonText));
}
