#include "forms/Form.h"

#include "platform/System.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QStatusTipEvent>

namespace {

/// Has a screen reader read the panel at once.
void Alert(QLabel *panel)
{
    QAccessibleEvent alert(panel, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace

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

bool Form::event(QEvent *event)
{
    if (event->type() != QEvent::StatusTip)
        return QDialog::event(event);
    ShowWord(static_cast<QStatusTipEvent *>(event)->tip());
    return true;
}

void Form::ShowWord(const QString &word)
{
    auto *panel = findChild<QLabel *>("MSG");
    if (!panel)
        return;
    const bool isHidden = m_word.isEmpty() || panel->text() != m_word;
    if (word.isEmpty() && !isHidden)
        panel->setText(m_textBehindWord);
    m_word = word;
    if (word.isEmpty())
        return;
    if (isHidden)
        m_textBehindWord = panel->text();
    panel->setText(word);
    Alert(panel);
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
            MoveFocus(!isBack);
        return;
    case Qt::Key_Down:
    case Qt::Key_Up:
        MoveFocus(event->key() == Qt::Key_Down);
        return;
    case Qt::Key_Escape:
        if (m_escapeButton)
            m_escapeButton->click();
        return;
    default:
        QDialog::keyPressEvent(event);
    }
}

void Form::MoveFocus(bool isForward)
{
    do
        focusNextPrevChild(isForward);
    while (m_helperButtons.contains(focusWidget()));
}

void Form::showEvent(QShowEvent *event)
{
    if (!m_isPlaced) {
        // With a large font a form may be larger than the screen; there is room for its frame.
        constexpr QSize Frame(20, 50);
        if (const QRect area = WorkArea(); !area.isEmpty())
            resize(size().boundedTo(area.size() - Frame));
        CenterForm(*this);
        // No button is pressed by Enter in another field, and none may look like it.
        for (QPushButton *button : findChildren<QPushButton *>())
            button->setAutoDefault(false);
        ColorReadOnlyBoxes();
    }
    m_isPlaced = true;
    QDialog::showEvent(event);
}

void Form::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_isPlaced)
        ColorReadOnlyBoxes();
}

/// Boxes that only show look like the form, so that those to type in stand out.
void Form::ColorReadOnlyBoxes()
{
    for (QLineEdit *box : findChildren<QLineEdit *>()) {
        if (!box->isReadOnly())
            continue;
        QPalette onlyBase;
        onlyBase.setColor(QPalette::Base, palette().color(QPalette::Window));
        box->setPalette(onlyBase);
    }
}

bool Form::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && object == m_lostClickTarget) {
        m_lostClickTarget = nullptr;
        return true;
    }
    const auto handlers = m_focusHandlers.find(object);
    const bool isFocusEvent = event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut;
    if (handlers == m_focusHandlers.end() || !isFocusEvent)
        return QDialog::eventFilter(object, event);
    const auto reason = static_cast<QFocusEvent *>(event)->reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason)
        return false;
    if (event->type() == QEvent::FocusIn && handlers->second.enter)
        handlers->second.enter();
    if (event->type() == QEvent::FocusOut && handlers->second.leave) {
        QWidget *newFocus = QApplication::focusWidget();
        handlers->second.leave(newFocus, reason);
        if (reason == Qt::MouseFocusReason && newFocus && focusWidget() == object)
            LoseClickOn(newFocus);
    }
    return false;
}

void Form::LoseClickOn(QWidget *target)
{
    // The press is still on its way: it gave the focus first.
    m_lostClickTarget = target;
    target->installEventFilter(this);
    QMetaObject::invokeMethod(
        this, [this] { m_lostClickTarget = nullptr; }, Qt::QueuedConnection);
}

void AddStatusPanels(QStatusBar &bar, const QStringList &keys)
{
    for (const QString &key : keys) {
        auto *panel = new QLabel(&bar);
        panel->setObjectName(key); // a screen reader reads its text
        bar.addWidget(panel, key == keys.front() ? 1 : 0);
    }
}

QString PanelText(const QStatusBar &bar, const QString &key)
{
    return bar.findChild<QLabel *>(key)->text();
}

namespace {

void Show(QLabel *panel, const QString &text, const QPalette &colors)
{
    panel->setPalette(colors);
    panel->setAutoFillBackground(colors.isBrushSet(QPalette::Active, QPalette::Window));
    panel->setText(text);
    panel->repaint();
}

} // namespace

void SetPanelText(QStatusBar &bar, const QString &key, const QString &text)
{
    Show(bar.findChild<QLabel *>(key), text, {});
}

void SetPanelWarning(QStatusBar &bar, const QString &key, const QString &text)
{
    constexpr QRgb Amber = qRgb(0xFF, 0xC8, 0x30);
    auto *panel = bar.findChild<QLabel *>(key);
    const bool isNew = panel->text() != text;
    QPalette colors;
    colors.setColor(QPalette::Window, QColor(Amber));
    colors.setColor(QPalette::WindowText, Qt::black);
    Show(panel, text, colors);
    if (isNew)
        Alert(panel);
}
