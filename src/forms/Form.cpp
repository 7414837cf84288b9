#include "forms/Form.h"

#include "forms/WindowMemory.h"
#include "platform/System.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QFocusEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QStatusTipEvent>
#include <QTableView>

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
    m_forgetAction = new QAction("ウィンドウの大きさと列の幅を元に戻す(&0)", this);
    m_forgetAction->setShortcut(Qt::CTRL | Qt::Key_0);
    connect(m_forgetAction, &QAction::triggered, this, [this] {
        ForgetArrangement();
        ShowWord("ウィンドウの大きさと列の幅を元に戻しました");
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
        Place();
        // No button is pressed by Enter in another field, and none may look like it.
        for (QPushButton *button : findChildren<QPushButton *>())
            button->setAutoDefault(false);
        ColorReadOnlyBoxes();
    }
    m_isPlaced = true;
    QDialog::showEvent(event);
}

void Form::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        KeepArrangement();
    QDialog::hideEvent(event);
}

/// In the middle of the work area, and no larger than it: there has to be room for the frame too.
void Form::Place()
{
    constexpr QSize Frame(20, 50);
    const QRect area = WorkArea();
    const QSize room
        = area.isEmpty() ? QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX) : area.size() - Frame;
    m_ownSize = size().boundedTo(room);
    const WindowMemory memory(*this);
    const QSize kept = memory.Size();
    resize(kept.isEmpty() ? m_ownSize : kept.boundedTo(room));
    CenterForm(*this);
    if (memory.IsMaximized())
        setWindowState(windowState() | Qt::WindowMaximized);
}

void Form::KeepColumns(QTableView &grid)
{
    const QHeaderView *header = grid.horizontalHeader();
    std::vector<int> &own = m_ownWidths[&grid];
    own.clear();
    for (int column = 0; column < header->count(); ++column)
        own.push_back(header->isSectionHidden(column) ? 0 : header->sectionSize(column));
    const std::vector<int> kept = WindowMemory(*this).Widths(grid.objectName());
    for (size_t column = 0; column < std::min(own.size(), kept.size()); ++column)
        if (own[column] > 0 && kept[column] > 0)
            grid.setColumnWidth(int(column), kept[column]);
}

/// Only what the operator has changed is kept.
void Form::KeepArrangement() const
{
    WindowMemory memory(*this);
    const QSize size = isMaximized() ? normalGeometry().size() : this->size();
    memory.SetSize(size == m_ownSize.expandedTo(minimumSize()) ? QSize() : size);
    memory.SetMaximized(isMaximized());
    for (const auto &[grid, own] : m_ownWidths) {
        const QHeaderView *header = grid->horizontalHeader();
        std::vector<int> widths(own.size());
        for (size_t column = 0; column < own.size(); ++column)
            if (const int width = header->sectionSize(int(column)); width != own[column])
                widths[column] = width;
        if (header->stretchLastSection() && !widths.empty())
            widths.back() = 0; // it is as wide as the grid leaves it
        memory.SetWidths(grid->objectName(), widths);
    }
}

void Form::TakeOwnArrangement()
{
    setWindowState(windowState() & ~Qt::WindowMaximized);
    resize(m_ownSize);
    CenterForm(*this);
    for (const auto &[grid, own] : m_ownWidths)
        for (size_t column = 0; column < own.size(); ++column)
            if (own[column] > 0)
                grid->setColumnWidth(int(column), own[column]);
    emit ArrangementForgotten();
}

void Form::ForgetArrangement()
{
    WindowMemory::ForgetAll();
    for (QWidget *window : QApplication::topLevelWidgets())
        if (auto *form = qobject_cast<Form *>(window); form && form->m_isPlaced)
            form->TakeOwnArrangement();
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
