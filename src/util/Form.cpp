#include "util/Form.h"

#include "platform/System.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFocusEvent>
#include <QLabel>
#include <QStatusBar>

Form::Form(QWidget *parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
}

void Form::OnFocus(QWidget *field, std::function<void()> enter, LeaveHandler leave)
{
    m_focusHandlers[field] = {std::move(enter), std::move(leave)};
    field->installEventFilter(this);
}

void Form::keyPressEvent(QKeyEvent *event)
{
    const bool isBack = event->modifiers() & Qt::ShiftModifier;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto *button = qobject_cast<QAbstractButton *>(focusWidget());
            button && !button->isCheckable())
            button->click();
        else
            focusNextPrevChild(!isBack);
        return;
    case Qt::Key_Down:
    case Qt::Key_Up:
        focusNextPrevChild(event->key() == Qt::Key_Down);
        return;
    case Qt::Key_Escape:
        if (m_escapeButton)
            m_escapeButton->click();
        return;
    default:
        QDialog::keyPressEvent(event);
    }
}

void Form::showEvent(QShowEvent *event)
{
    if (!m_isPlaced)
        CenterForm(*this);
    m_isPlaced = true;
    QDialog::showEvent(event);
}

bool Form::eventFilter(QObject *object, QEvent *event)
{
    const auto handlers = m_focusHandlers.find(object);
    const bool isFocusEvent = event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut;
    if (handlers == m_focusHandlers.end() || !isFocusEvent)
        return QDialog::eventFilter(object, event);
    const auto reason = static_cast<QFocusEvent *>(event)->reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason)
        return false;
    if (event->type() == QEvent::FocusIn && handlers->second.enter)
        handlers->second.enter();
    if (event->type() == QEvent::FocusOut && handlers->second.leave)
        handlers->second.leave(QApplication::focusWidget(), reason);
    return false;
}

void AddStatusPanels(QStatusBar &bar, const QStringList &keys)
{
    for (const QString &key : keys) {
        auto *panel = new QLabel(&bar);
        panel->setObjectName(key);
        panel->setAccessibleName(key);
        bar.addWidget(panel, key == keys.front() ? 1 : 0);
    }
}

void SetPanelText(QStatusBar &bar, const QString &key, const QString &text)
{
    auto *panel = bar.findChild<QLabel *>(key);
    panel->setText(text);
    panel->repaint();
}
