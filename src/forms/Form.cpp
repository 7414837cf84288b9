#include "forms/Form.h"

#include "forms/StatusPanel.h"
#include "forms/WindowMemory.h"
#include "platform/Contrast.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusTipEvent>

Form::Form(QWidget *parent)
    : QDialog(parent)
    , m_arrangement(*this)
{
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
    m_forgetAction = new QAction("ウィンドウの大きさ・列の幅・表示を元に戻す(&0)", this);
    m_forgetAction->setShortcut(Qt::CTRL | Qt::Key_0);
    connect(m_forgetAction, &QAction::triggered, this, [this] {
        ForgetArrangement();
        ShowWord("ウィンドウの大きさ・列の幅・表示を元に戻しました");
    });
    addAction(m_forgetAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
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
    auto *panel = findChild<StatusPanel *>("MSG");
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
    panel->Alert();
}

void Form::keyPressEvent(QKeyEvent *event)
{
    const bool isBack = event->modifiers() & Qt::ShiftModifier;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_mainButton && event->modifiers() & Qt::ControlModifier)
            m_mainButton->click();
        else if (auto *button = qobject_cast<QAbstractButton *>(focusWidget());
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

void Form::setVisible(bool isVisible)
{
    const bool isFirst = isVisible && !m_isPlaced;
    if (isFirst)
        Prepare();
    QDialog::setVisible(isVisible);
    if (!isFirst)
        return;
    // Where the focus is can be seen before the first key.
    setAttribute(Qt::WA_KeyboardFocusChange);
    if (!focusWidget())
        focusNextPrevChild(true);
    if (auto *box = qobject_cast<QLineEdit *>(focusWidget()))
        box->selectAll(); // as when he comes to it by a key
}

/// Gives the form its look before it is seen for the first time.
void Form::Prepare()
{
    m_isPlaced = true;
    ensurePolished();
    ColorControls();
    for (QPushButton *button : findChildren<QPushButton *>()) {
        // No button is pressed by Enter in another field, and none may look like it.
        button->setAutoDefault(false);
        TellKeys(*button);
    }
    m_arrangement.Place();
}

void Form::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        m_arrangement.Keep();
    QDialog::hideEvent(event);
}

void Form::ForgetArrangement()
{
    WindowMemory::ForgetAll();
    for (QWidget *window : QApplication::topLevelWidgets()) {
        auto *form = qobject_cast<Form *>(window);
        if (!form || !form->m_isPlaced)
            continue;
        form->m_arrangement.TakeOwn();
        emit form->ArrangementForgotten();
    }
}

/// A button's tip tells the keys that press it.
void Form::TellKeys(QAbstractButton &button) const
{
    QStringList keys;
    if (!button.shortcut().isEmpty())
        keys += button.shortcut().toString(QKeySequence::NativeText);
    if (&button == m_mainButton)
        keys += "Ctrl+Enter";
    if (&button == m_escapeButton)
        keys += "Esc";
    const QString tip = button.toolTip();
    keys.removeIf([&](const QString &key) { return tip.contains(key); });
    if (!keys.isEmpty())
        button.setToolTip(tip.isEmpty() ? keys.join("、") : tip + "（" + keys.join("、") + "）");
}

void Form::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (!m_isPlaced)
        return;
    if (event->type() == QEvent::PaletteChange)
        ColorControls();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        QMetaObject::invokeMethod(
            this, [this] { m_arrangement.MakeFit(); }, Qt::QueuedConnection);
}

/// Boxes that only show look like the form, so that those to type in stand out. Where the style
/// draws outlines in a darker shade of the form, and there is none, they get one that is seen.
void Form::ColorControls()
{
    constexpr int Shade = 140;
    constexpr double LeastOutline = 1.05;
    const QColor background = palette().color(QPalette::Window);
    QPalette outlined;
    if (ContrastRatio(background, background.darker(Shade)) < LeastOutline)
        outlined.setColor(QPalette::Window, QColor(Qt::gray));
    QPalette readOnly = outlined;
    readOnly.setColor(QPalette::Base, background);
    readOnly.setColor(QPalette::Text, Readable(palette().color(QPalette::Text), background));
    for (QLineEdit *box : findChildren<QLineEdit *>())
        box->setPalette(box->isReadOnly() ? readOnly : outlined);
    for (QAbstractButton *button : findChildren<QAbstractButton *>())
        button->setPalette(outlined);
    if (!m_mainAct)
        return;
    constexpr int Darker = 130; // percent: the style brightens a button's upper half
    const QColor text = palette().color(QPalette::HighlightedText);
    QPalette act = outlined;
    act.setColor(QPalette::Button,
                 Readable(palette().color(QPalette::Highlight), text).darker(Darker));
    act.setColor(QPalette::ButtonText, text);
    m_mainAct->setPalette(act);
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
        // What has to be mended is selected, so that it can be typed anew; the box itself, which is
        // about to hear that it was left, would take that back.
        if (auto *box = qobject_cast<QLineEdit *>(object); box && focusWidget() == box)
            QMetaObject::invokeMethod(box, &QLineEdit::selectAll, Qt::QueuedConnection);
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

void SetThemeIcon(QAbstractButton &button, const QStringList &names)
{
    for (const QString &name : names)
        if (button.icon().isNull() && QIcon::hasThemeIcon(name))
            button.setIcon(QIcon::fromTheme(name));
}
