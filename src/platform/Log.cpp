#include "platform/Log.h"

#include "platform/Clock.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

Q_LOGGING_CATEGORY(LogStart, "talven.start", QtWarningMsg)
Q_LOGGING_CATEGORY(LogDatabase, "talven.database", QtWarningMsg)
Q_LOGGING_CATEGORY(LogFile, "talven.file", QtWarningMsg)
Q_LOGGING_CATEGORY(LogList, "talven.list", QtWarningMsg)
Q_LOGGING_CATEGORY(LogAnswer, "talven.answer", QtWarningMsg)
Q_LOGGING_CATEGORY(LogBox, "talven.box", QtWarningMsg)

namespace {

constexpr qint64 MostBytes = 1'000'000; ///< of one file
constexpr int OldFiles = 5;
constexpr const char *LevelNames[] = {"debug", "info", "warning", "error"};

/// A file that makes room for itself: one that has grown full becomes the youngest of the old ones.
class RotatingFile
{
public:
    explicit RotatingFile(QString path)
        : m_path(std::move(path))
    {
    }

    bool Write(const QByteArray &line)
    {
        if (!m_file.isOpen())
            Open(); // not before there is something to tell
        if (m_file.size() + line.size() > MostBytes) {
            m_file.close();
            Rotate();
            Open();
        }
        return m_file.isOpen() && m_file.write(line) == line.size();
    }

private:
    void Open()
    {
        QDir().mkpath(QFileInfo(m_path).path());
        m_file.setFileName(m_path);
        m_file.open(QFile::Append | QFile::Unbuffered, QFile::ReadOwner | QFile::WriteOwner);
    }

    void Rotate()
    {
        const auto old = [&](int age) { return QString("%1.%2").arg(m_path).arg(age); };
        QFile::remove(old(OldFiles));
        for (int age = OldFiles; age > 1; --age)
            QFile::rename(old(age - 1), old(age));
        QFile::rename(m_path, old(1));
    }

    const QString m_path;
    QFile m_file;
};

struct Log
{
    LogLevel level = LogLevel::Info;
    RotatingFile file{LogPath()};
    bool isInJournal = false;
    bool isComplaintMade = false;
    QMutex mutex;
};

std::unique_ptr<Log> &TheLog()
{
    static std::unique_ptr<Log> log;
    return log;
}

/// True when the journal reads what the process writes to its standard error.
bool IsJournalListening()
{
    sockaddr_un address = {};
    socklen_t length = sizeof(address);
    const bool isSocket
        = ::getpeername(STDERR_FILENO, reinterpret_cast<sockaddr *>(&address), &length) == 0
          && address.sun_family == AF_UNIX && length > offsetof(sockaddr_un, sun_path);
    return isSocket && QByteArrayView(address.sun_path).startsWith("/run/systemd/journal/");
}

LogLevel LevelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return LogLevel::Debug;
    case QtInfoMsg:
        return LogLevel::Info;
    case QtWarningMsg:
        return LogLevel::Warning;
    default:
        return LogLevel::Error;
    }
}

void WriteToStandardError(const QByteArray &text)
{
    std::fputs(text.constData(), stderr);
    std::fflush(stderr);
}

void Handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    Log &log = *TheLog();
    const QMutexLocker locker(&log.mutex);
    const LogLevel level = LevelOf(type);
    const QString line = OneLine(text);
    if (level >= log.level) {
        const QString what
            = QString("%1 %2: %3\n").arg(LevelNames[int(level)], context.category, line);
        const QString entry = QString("%1 [%2] ")
                                  .arg(Now().toString("yyyy-MM-dd HH:mm:ss.zzz"))
                                  .arg(QCoreApplication::applicationPid())
                              + what;
        if (!log.file.Write(entry.toUtf8()) && !std::exchange(log.isComplaintMade, true))
            WriteToStandardError(
                QString("TL030101: ログに書き込めません: %1\n").arg(LogPath()).toLocal8Bit());
        if (log.isInJournal)
            WriteToStandardError(what.toUtf8());
    }
    if (!log.isInJournal && level >= LogLevel::Warning)
        WriteToStandardError(QString("TL030101: %1\n").arg(line).toLocal8Bit());
    // Without a display, Qt would end the process by a signal, with a dump of its memory.
    if (type == QtFatalMsg && QCoreApplication::startingUp()) {
        WriteToStandardError(
            QString("TL030101: 画面を使えないため、開始できません\n").toLocal8Bit());
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

std::optional<LogLevel> LogLevelOf(const QString &name)
{
    const auto *found
        = std::ranges::find(LevelNames, name, [](const char *of) { return QString(of); });
    if (found == std::end(LevelNames))
        return std::nullopt;
    return LogLevel(found - std::begin(LevelNames));
}

QString LogPath()
{
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // A relative path does not count there.
    const QString folder = QDir::isAbsolutePath(state) ? state : QDir::homePath() + "/.local/state";
    return folder + "/talven/TL030101.log";
}

void SetLogLevel(LogLevel level)
{
    const auto rule = [&](LogLevel of) {
        return QString("talven.*.%1=%2\n").arg(LevelNames[int(of)], level <= of ? "true" : "false");
    };
    QLoggingCategory::setFilterRules(rule(LogLevel::Debug) + rule(LogLevel::Info));
    TheLog()->level = level;
}

void StartLog(LogLevel level)
{
    TheLog() = std::make_unique<Log>();
    TheLog()->isInJournal = IsJournalListening();
    SetLogLevel(level);
    qInstallMessageHandler(Handle);
}

QString WithoutValues(const QString &text)
{
    return text.startsWith("INSERT ") ? text.section(" VALUES ", 0, 0) + " VALUES (…)" : text;
}

QString OneLine(QString text)
{
    text.replace("\r\n", "↵").replace('\r', "↵").replace('\n', "↵");
    for (QChar &character : text)
        if (character.category() == QChar::Other_Control)
            character = ' ';
    return text;
}
