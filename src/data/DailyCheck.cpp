#include "data/DailyCheck.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "data/dao/Database.h"
#include "data/dao/postgres/ServerFile.h"
#include "platform/Clock.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QUrl>
#include <chrono>
#include <optional>

namespace {

using namespace std::chrono_literals;

/// How long nobody must have written before the check begins or goes on, and how often it looks.
constexpr auto Quiet = 300ms;
constexpr auto QuietInterval = 100ms;

/// The journal is there from a transaction's first change to its end.
bool IsWrittenTo(const QString &localPath)
{
    return QFile::exists(localPath + "-journal");
}

/// Waits until nobody has written for a while. False when the check is to stop.
bool WaitForQuiet(const QString &localPath, const std::stop_token &stop)
{
    for (auto quiet = 0ms; quiet < Quiet; quiet += QuietInterval) {
        if (stop.stop_requested())
            return false;
        if (IsWrittenTo(localPath))
            quiet = 0ms;
        std::this_thread::sleep_for(QuietInterval);
    }
    return true;
}

/// The faults of a table; nothing when the check gave way to a writer or is to stop.
std::optional<QStringList> FaultsOf(Database &database, const QString &table,
                                    const QString &localPath, const std::stop_token &stop)
{
    try {
        auto faults = database.Engine().FindDamage(
            table, [&] { return stop.stop_requested() || IsWrittenTo(localPath); });
        if (faults)
            for (QString &fault : *faults)
                fault.prepend(table + ": ");
        return faults;
    } catch (const DaoError &error) {
        if (error.number == DaoErrors::CorruptFile)
            return QStringList{table + ": " + error.description};
        return QStringList(); // a table that is missing: the program's own error boxes tell
    }
}

QString SettingsKey(const QString &localPath)
{
    const QString path = QFileInfo(localPath).canonicalFilePath();
    return "DailyCheck/" + QString::fromLatin1(QUrl::toPercentEncoding(path));
}

QString Today()
{
    return Now().date().toString(Qt::ISODate);
}

} // namespace

DailyCheck::DailyCheck(const QString &localPath, const QString &connect,
                       const QString &settingsPath, Tell tell)
    : m_localPath(localPath)
    , m_connect(connect)
    , m_settingsPath(settingsPath)
    , m_tell(std::move(tell))
{
    const QSettings settings(m_settingsPath, QSettings::IniFormat);
    if (settings.value(SettingsKey(m_localPath)).toString() != Today())
        m_thread = std::jthread([this](const std::stop_token &stop) { Run(stop); });
}

void DailyCheck::Run(const std::stop_token &stop)
{
    QStringList faults;
    try {
        if (ServerFile::SettingsOf(m_localPath)) // a server looks after its own files
            return;
        if (!WaitForQuiet(m_localPath, stop))
            return;
        Database database(m_localPath, true, m_connect);
        for (const TableDefinition &table : Tables()) {
            std::optional<QStringList> found;
            while (!(found = FaultsOf(database, table.name, m_localPath, stop)))
                if (!WaitForQuiet(m_localPath, stop))
                    return;
            faults += *found;
        }
    } catch (const DaoError &error) {
        if (error.number != DaoErrors::CorruptFile)
            return;
        faults += error.description;
    }
    QMetaObject::invokeMethod(
        &m_receiver, [this, faults] { Finish(faults); }, Qt::QueuedConnection);
}

void DailyCheck::Finish(const QStringList &faults)
{
    QSettings(m_settingsPath, QSettings::IniFormat).setValue(SettingsKey(m_localPath), Today());
    m_tell(faults);
}
