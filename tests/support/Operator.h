#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

/// Plays the operator at the program's windows: a list of steps, each done as soon as the window
/// that it needs is there. Runs from a timer, so that it goes on while the program shows modal
/// windows.
class Operator : public QObject
{
public:
    using Condition = std::function<bool()>;
    using Action = std::function<void()>;

    /// Adds a step. `what` names it in the report of one that is not reached.
    void Then(const QString &what, Condition isReady, Action act);

    /// Adds a step for the moment at which the modal window of this object name is in front.
    void At(const QString &window, const QString &what, Action act);

    /// Begins; a step that is not ready within the time limit ends the play: every window is
    /// closed.
    void Start(int limitMs = 20'000);

    bool IsDone() const { return m_next == m_steps.size() && m_failure.isEmpty(); }

    /// The step that was not reached or failed; empty when all went well.
    const QString &Failure() const { return m_failure; }

    /// Ends the play as failed.
    void Fail(const QString &why);

    /// Waits within an action, while the steps after it stand still. False when the step's time is
    /// over.
    bool Wait(const Condition &isReached);

    /// The modal window in front when it has this object name; null otherwise.
    static QWidget *Front(const QString &window);

    /// The control of this object name in the modal window in front; fails the play when missing.
    template <typename Control>
    Control *Find(const QString &name)
    {
        QWidget *window = Front({});
        auto *control = window ? window->findChild<Control *>(name) : nullptr;
        if (!control)
            Fail("no control " + name);
        return control;
    }

    // What hands do. Each goes through real events.
    void Click(const QString &control);
    void ClickRow(const QString &grid, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void ClickCell(const QString &grid, int column, int row);
    void Type(const QString &control, const QString &text); ///< replaces what stands in the box
    void Keys(const QString &text);                         ///< to whatever has the focus
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

private:
    struct Step
    {
        QString what;
        Condition isReady;
        Action act;
    };

    void Tick();

    std::vector<Step> m_steps;
    size_t m_next = 0;
    bool m_isWaiting = false;
    QString m_failure;
    int m_limitMs = 0;
    QDeadlineTimer m_deadline; ///< for the next step
};
