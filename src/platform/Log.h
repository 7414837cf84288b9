#pragma once

#include <QLoggingCategory>
#include <QString>
#include <optional>

// What the program does, for whoever looks after it: one line each, in a file per user and in the
// journal. No prices, and nothing that the user could not read in the database.

Q_DECLARE_LOGGING_CATEGORY(LogStart)
Q_DECLARE_LOGGING_CATEGORY(LogDatabase)
Q_DECLARE_LOGGING_CATEGORY(LogFile)
Q_DECLARE_LOGGING_CATEGORY(LogList)
Q_DECLARE_LOGGING_CATEGORY(LogAnswer)
Q_DECLARE_LOGGING_CATEGORY(LogBox)

/// How much is written: everything of this weight and above.
enum class LogLevel { Debug, Info, Warning, Error };

/// The level of a name "debug", "info", "warning" or "error"; nothing for any other text.
std::optional<LogLevel> LogLevelOf(const QString &name);

/// The user's log: $XDG_STATE_HOME, else ~/.local/state, and there talven/TL030101.log. Older ones
/// are TL030101.log.1 (the youngest) and on.
QString LogPath();

/// From now on the program's messages, and those of its libraries, go to the user's log; to the
/// journal too when it reads the process's standard error, else warnings and errors to standard
/// error. Before it, only warnings and errors are written anywhere. What ends the process before
/// its windows can be made ends it with exit status 1.
void StartLog(LogLevel level);

/// Changes what is written from now on.
void SetLogLevel(LogLevel level);

/// A statement, or any other text, without the values that an INSERT writes: they are in the
/// database, and a log has more readers.
QString WithoutValues(const QString &text);

/// The text on one line: its line breaks show as "↵", other control characters as blanks.
QString OneLine(QString text);
