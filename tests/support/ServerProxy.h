#pragma once

#include <QString>
#include <QTemporaryDir>
#include <atomic>
#include <chrono>
#include <list>
#include <thread>

/// Stands between programs and a server, as a network does: counts the statements that go through,
/// takes its time for each, and breaks the connection at one of them. What can't be set up ends the
/// process.
class ServerProxy
{
public:
    enum class Break {
        Before, ///< the statement does not reach the server
        After,  ///< the server runs it, and nobody hears of that
        Silent, ///< the statement is lost, and the server does not notice that the connection is
        Killed, ///< the server's process for the connection is ended by its administrator
        Hung,   ///< nothing goes through any more, on any connection, and none is closed
    };

    /// `settings` are those of the server, on a local socket.
    explicit ServerProxy(const QString &settings);
    ~ServerProxy();
    ServerProxy(const ServerProxy &) = delete;
    ServerProxy &operator=(const ServerProxy &) = delete;

    /// The connection settings for who connects through it.
    QString Settings() const { return m_settings; }

    /// Breaks the connection at the n-th statement from now; 0: at none.
    void BreakAt(int statement, Break how = Break::Before);

    /// Statements since BreakAt, or since the beginning.
    int Statements() const { return m_statements; }

    /// A statement and its reply take so much longer.
    void SetRoundTrip(std::chrono::milliseconds time) { m_roundTrip = time; }

private:
    class Link;

    void Accept();
    void KillBackend(int processId) const;

    const QString m_server;
    const QTemporaryDir m_folder;
    QString m_settings;
    int m_listener = -1;
    std::atomic<int> m_statements = 0;
    std::atomic<int> m_breakAt = 0;
    std::atomic<Break> m_how = Break::Before;
    std::atomic<bool> m_isHung = false;
    std::atomic<std::chrono::milliseconds> m_roundTrip{};
    std::atomic<bool> m_isEnding = false;
    std::list<std::thread> m_links;
    std::thread m_acceptor;
};
