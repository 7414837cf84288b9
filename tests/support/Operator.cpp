#include "support/Operator.h"

#include "support/Hands.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QTimer>

namespace {

constexpr int TickMs = 5;

} // namespace

void Operator::Then(const QString &what, Condition isReady, Action act)
{
    m_steps.push_back({what, std::move(isReady), std::move(act)});
}

void Operator::At(const QString &window, const QString &what, Action act)
{
    Then(
        what, [window] { return Front(window) != nullptr; }, std::move(act));
}

void Operator::Start(int limitMs)
{
    m_limitMs = limitMs;
    m_deadline.setRemainingTime(m_limitMs);
    QTimer::singleShot(TickMs, this, &Operator::Tick);
}

void Operator::Tick()
{
    // A new timer each time: one that is still running its action would not fire inside of it.
    QTimer::singleShot(TickMs, this, &Operator::Tick);
    if (!m_failure.isEmpty()) {
        // Whatever the program still shows is closed until it has ended.
        QWidget *window = QApplication::activeModalWidget();
        const auto *box = qobject_cast<QMessageBox *>(window);
        if (QAbstractButton *yes = box ? box->button(QMessageBox::Yes) : nullptr)
            yes->click(); // no keeps the program going
        else if (window)
            window->close();
        return;
    }
    if (m_isWaiting || m_next == m_steps.size())
        return;
    const Step &step = m_steps[m_next];
    if (!step.isReady()) {
        if (m_deadline.hasExpired())
            Fail("not reached: " + step.what);
        return;
    }
    // The action may open a modal window; the timer then goes on with the next step inside of it.
    const Action act = step.act;
    ++m_next;
    m_deadline.setRemainingTime(m_limitMs);
    act();
    m_deadline.setRemainingTime(m_limitMs);
}

void Operator::Fail(const QString &why)
{
    if (m_failure.isEmpty())
        m_failure = (m_next > 0 ? m_steps[m_next - 1].what + ": " : QString()) + why;
}

bool Operator::Wait(const Condition &isReached)
{
    const QScopedValueRollback waiting(m_isWaiting, true);
    return QTest::qWaitFor(isReached, m_limitMs);
}

QWidget *Operator::Front(const QString &window)
{
    QWidget *front = QApplication::activeModalWidget();
    const bool isWanted
        = front && front->isVisible() && (window.isEmpty() || front->objectName() == window);
    // The hourglass is waited for; a box is answered all the same.
    const bool isBusy = front && QApplication::overrideCursor() && !front->inherits("QMessageBox")
                        && front->objectName() != "InputBox";
    if (!isWanted || isBusy)
        return nullptr;
    // Keys reach a window only when it is the active one; a virtual display has no window manager
    // that would see to it.
    const QWidget *focus = QApplication::focusWidget();
    if (focus && front->isAncestorOf(focus))
        return front;
    front->activateWindow();
    return nullptr;
}

void Operator::Click(const QString &control)
{
    if (auto *widget = Find<QWidget>(control))
        QTest::mouseClick(widget, Qt::LeftButton);
}

void Operator::ClickRow(const QString &grid, int row, Qt::KeyboardModifiers modifiers)
{
    if (auto *view = Find<QTableView>(grid))
        ::ClickRow(*view, row, modifiers);
}

void Operator::ClickCell(const QString &grid, int column, int row)
{
    if (auto *view = Find<QTableView>(grid))
        ::ClickCell(*view, column, row);
}

void Operator::Type(const QString &control, const QString &text)
{
    if (auto *box = Find<QLineEdit>(control))
        TypeInto(*box, text);
}

void Operator::Keys(const QString &text)
{
    ::Keys(text);
}

void Operator::Key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    if (QWidget *focus = QApplication::focusWidget())
        QTest::keyClick(focus, key, modifiers);
    else
        Fail("nothing has the focus");
}
