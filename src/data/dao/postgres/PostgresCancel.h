#pragma once

#include <QDeadlineTimer>
#include <atomic>
#include <memory>

struct pg_conn;

/// Cancels a statement on the server. Asking takes a connection of its own, and a server that hangs
/// or a network that has gone silent would let the operator wait for it: so it is done in a thread.
class PostgresCancel
{
public:
    /// Asks the server to cancel what this connection is doing, once; returns without waiting.
    void Ask(pg_conn *connection);

    bool IsAsked() const { return m_isTaken != nullptr; }

    /// Whether the server has had its time, and the connection is to be given up.
    bool IsOverdue() const { return IsAsked() && m_deadline.hasExpired(); }

    /// Waits until the server has taken what was asked of it: a next statement before that would be
    /// cancelled in place of this one. False when it takes too long.
    bool WaitUntilTaken() const;

private:
    static constexpr int MostWaitMs = 3'000;

    std::shared_ptr<std::atomic<bool>> m_isTaken; ///< nothing: not asked
    QDeadlineTimer m_deadline;
};
