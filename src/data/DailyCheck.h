#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <thread>

/// A look for damage through the tables that the program reads, at most once a day for each user
/// and database file: the engine may read fewer lines from a damaged file without an error, and the
/// list would say nothing.
///
/// Nobody waits for it. It has a thread and a connection of its own, and lets go of the file as
/// soon as any program writes to it; the table it was at is looked through again later. A database
/// on a server is left to the server's own checks.
class DailyCheck
{
public:
    /// Takes what was found, one text per fault: the table and the engine's own words
    /// ("TLSP0010: Tree 9 page 9: ..."). None for a sound file.
    using Tell = std::function<void(const QStringList &faults)>;

    /// Begins when the day's check of this file is not yet among `settingsPath`'s, a settings file
    /// of the user's. `tell` is called once, by the event loop of the thread that makes this
    /// object; it is not called when the check is not due, can't be made (no such file, no right to
    /// read it), or has not come to its end.
    DailyCheck(const QString &localPath, const QString &connect, const QString &settingsPath,
               Tell tell);

private:
    void Run(const std::stop_token &stop);
    void Finish(const QStringList &faults);

    const QString m_localPath;
    const QString m_connect;
    const QString m_settingsPath;
    const Tell m_tell;
    QObject m_receiver;
    std::jthread m_thread; ///< the last member: it ends before the others go
};
