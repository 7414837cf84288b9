#pragma once

#include "platform/Log.h"
#include "support/TestFolder.h"
#include "support/Variable.h"

#include <QFile>
#include <QStringList>

/// Writes the log while it lives, of a user whose log begins empty.
class LogLines
{
public:
    LogLines() { StartLog(LogLevel::Info); }
    ~LogLines()
    {
        SetLogLevel(LogLevel::Warning);
        qInstallMessageHandler(nullptr);
    }
    Q_DISABLE_COPY(LogLines)

    /// The lines so far, without their time and process: "info talven.list: ...".
    QStringList Lines() const
    {
        QStringList lines;
        if (!QFile::exists(LogPath()))
            return lines; // it is made when there is something to tell
        for (const QByteArray &line : folder.Read("talven/TL030101.log").split('\n'))
            lines += QString::fromUtf8(line).section("] ", 1);
        lines.removeLast(); // behind the last line end
        return lines;
    }

    /// The lines of one category, without its name.
    QStringList Of(const QString &category) const
    {
        QStringList lines;
        for (const QString &line : Lines().filter(' ' + category + ": "))
            lines += line.section(": ", 1);
        return lines;
    }

    const TestFolder folder;

private:
    const Variable m_state{"XDG_STATE_HOME", folder.Path()};
};
