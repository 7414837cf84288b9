#include "forms/InputRule.h"

#include "platform/ShiftJis.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QStatusTipEvent>

namespace {

constexpr int NoLimit = 32767;

/// A word on the first character that the code page does not have; empty when it has them all.
QString WordOnStranger(const QString &text)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool isPair = at + 1 < text.size() && text[at].isHighSurrogate();
        const QString character = text.mid(at, isPair ? 2 : 1);
        at += isPair ? 1 : 0;
        if (character != QChar(0) && IsShiftJisText(character))
            continue;
        const uint code = character.toUcs4().front();
        const QString name = "U+" + QString::number(code, 16).toUpper().rightJustified(4, '0');
        return (QChar::isPrint(code) ? QString("「%1」（%2）").arg(character, name) : name)
               + "は使えない文字です";
    }
    return {};
}

} // namespace

InputRule::InputRule(QLineEdit &box, Judge judge)
    : QObject(&box)
    , m_box(box)
    , m_judge(std::move(judge))
{
    box.setMaxLength(NoLimit);
    box.installEventFilter(this);
}

bool InputRule::eventFilter(QObject *object, QEvent *event)
{
    // While it goes away, the box still gets events as a plain widget.
    if (!qobject_cast<QLineEdit *>(object) || m_box.isReadOnly())
        return false;
    switch (event->type()) {
    case QEvent::KeyPress:
        return FilterKey(static_cast<const QKeyEvent &>(*event));
    case QEvent::InputMethod:
        return FilterCommit(static_cast<const QInputMethodEvent &>(*event));
    case QEvent::Drop:
        return FilterDrop(static_cast<QDropEvent &>(*event));
    case QEvent::MouseButtonRelease:
        return FilterMiddleButton(static_cast<const QMouseEvent &>(*event));
    case QEvent::ContextMenu:
        ShowMenu(static_cast<const QContextMenuEvent &>(*event).globalPos());
        return true;
    case QEvent::FocusOut:
        Tell({});
        return false;
    default:
        return false;
    }
}

bool InputRule::FilterKey(const QKeyEvent &key)
{
    if (key.matches(QKeySequence::Paste)) {
        Insert(QApplication::clipboard()->text());
        return true;
    }
    const QString typed = key.text();
    const auto modifiers = key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const bool isCommand = modifiers == Qt::ControlModifier; // with Alt it is AltGr
    const bool isControl = typed.size() == 1 && typed[0].category() == QChar::Other_Control;
    const bool isText = !typed.isEmpty() && (!isControl || typed[0].isNull());
    if (isCommand || !isText) {
        if (!typed.isEmpty())
            Tell({});
        return false;
    }
    const auto taken = Admit(typed, true);
    if (taken && *taken == typed)
        return false;
    if (taken)
        m_box.insert(*taken);
    return true;
}

bool InputRule::FilterCommit(const QInputMethodEvent &event)
{
    if (m_isJudged || event.commitString().isEmpty())
        return false;
    const auto taken = Admit(event.commitString());
    if (taken && *taken == event.commitString())
        return false;
    QInputMethodEvent rest(event.preeditString(), event.attributes());
    if (taken)
        rest.setCommitString(*taken, event.replacementStart(), event.replacementLength());
    const QScopedValueRollback judged(m_isJudged, true);
    QCoreApplication::sendEvent(&m_box, &rest);
    return true;
}

bool InputRule::FilterDrop(QDropEvent &drop)
{
    if (drop.source() == &m_box && drop.dropAction() == Qt::MoveAction)
        return false; // what is moved within the box is in it already
    QDragLeaveEvent end;
    QCoreApplication::sendEvent(&m_box, &end);
    drop.acceptProposedAction();
    m_box.setCursorPosition(m_box.cursorPositionAt(drop.position().toPoint()));
    Insert(drop.mimeData()->text());
    return true;
}

bool InputRule::FilterMiddleButton(const QMouseEvent &release)
{
    const QClipboard *clipboard = QApplication::clipboard();
    if (release.button() != Qt::MiddleButton || !clipboard->supportsSelection())
        return false;
    m_box.deselect();
    Insert(clipboard->text(QClipboard::Selection));
    return true;
}

void InputRule::ShowMenu(const QPoint &at)
{
    QMenu *menu = m_box.createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (QAction *action : menu->actions()) {
        if (!action->text().startsWith(QLineEdit::tr("&Paste")))
            continue;
        action->disconnect();
        connect(action, &QAction::triggered, this,
                [this] { Insert(QApplication::clipboard()->text()); });
    }
    menu->popup(at);
}

void InputRule::Insert(const QString &text)
{
    if (const auto taken = Admit(text))
        m_box.insert(*taken);
}

/// What the box takes of a text, having selected what it takes the place of; nothing when it is
/// refused.
std::optional<QString> InputRule::Admit(const QString &text, bool isKey)
{
    if (text.isEmpty())
        return std::nullopt;
    int start = m_box.hasSelectedText() ? m_box.selectionStart() : m_box.cursorPosition();
    const int end = start + int(m_box.selectedText().size());
    const QString held = m_box.text();
    QString own = ToCodePage(text);
    // A voiced mark that comes by itself belongs to the kana before it.
    const QString kana
        = text[0].isMark() && start > 0 ? held.mid(start - 1, 1) + text[0] : QString();
    const bool isComposed = ToCodePage(kana).size() == 1;
    if (isComposed) {
        own = ToCodePage(kana + text.mid(1));
        --start;
    }
    const Verdict verdict = JudgeOwn({own, held.left(start), held.mid(end), isKey});
    if (!verdict.word.isEmpty())
        QApplication::beep();
    Tell(verdict.word);
    if (verdict.taken && verdict.isWhole)
        m_box.selectAll();
    else if (verdict.taken && isComposed)
        m_box.setSelection(start, end - start);
    return verdict.taken;
}

Verdict InputRule::JudgeOwn(Brought brought) const
{
    if (const QString word = WordOnStranger(brought.text); !word.isEmpty())
        return {std::nullopt, word};
    static const QRegularExpression controls("[\\x01-\\x1f\\x7f]+");
    brought.text = brought.text.split(controls, Qt::SkipEmptyParts).join(' ');
    return brought.text.isEmpty() ? Verdict() : m_judge(brought);
}

void InputRule::Tell(const QString &word)
{
    if (word.isEmpty() && !m_hasTold)
        return;
    m_hasTold = !word.isEmpty();
    QStatusTipEvent tip(word);
    QCoreApplication::sendEvent(&m_box, &tip);
}
