#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "platform/Clock.h"
#include "tldb/NewDatabase.h"
#include "tldb/check/DatabaseCheck.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <memory>
#include <sqlite3.h>

namespace {

constexpr auto Source = "tldb";

bool HasHistory(Database &database)
{
    return !ColumnsInFile(database, HistoryTable).isEmpty();
}

struct Close
{
    void operator()(sqlite3 *connection) const { sqlite3_close(connection); }
};

/// Copies the database's pages to a new file, synced to the disk.
void CopyPages(Database &database, const QString &localPath)
{
    sqlite3 *opened = nullptr;
    const int isOpen = sqlite3_open_v2(localPath.toUtf8(), &opened,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    const std::unique_ptr<sqlite3, Close> copy(opened);
    if (isOpen != SQLITE_OK)
        throw DaoErrors::FromSqlite(copy.get(), Source);
    sqlite3_exec(copy.get(), "PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
    sqlite3_backup *backup = sqlite3_backup_init(copy.get(), "main", database.Connection(), "main");
    if (backup)
        sqlite3_backup_step(backup, -1);
    if (!backup || sqlite3_backup_finish(backup) != SQLITE_OK)
        throw DaoErrors::FromSqlite(copy.get(), Source);
}

/// Copies a database, while nobody can write to it, to a file beside its own that is named after
/// the moment, and returns the new file's path. The copy gets its name when it is whole, and the
/// file permissions before it has content.
QString BackUp(Database &database, const QFileInfo &file)
{
    const QString backupPath = file.dir().filePath(
        file.completeBaseName() + Now().toString("-yyyyMMdd-HHmmss.") + file.suffix());
    const QString buildPath
        = QString("%1.%2.new").arg(backupPath).arg(QCoreApplication::applicationPid());
    QFile copy(buildPath);
    if (!copy.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw DaoErrors::Make(DaoErrors::CannotUpdate, Source, buildPath);
    copy.setPermissions(file.permissions());
    copy.close();
    try {
        CopyPages(database, buildPath);
        if (!copy.rename(backupPath)) // which never overwrites
            throw DaoErrors::Make(DaoErrors::CannotUpdate, Source, backupPath);
    } catch (const DaoError &) {
        QFile::remove(buildPath);
        throw;
    }
    return backupPath;
}

} // namespace

int RunUpgrade(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString path = DatabasePath(arguments.positionalArguments().first());
    QString backupPath;
    try {
        Database database(path, false, ConnectText);
        // Who holds the lock can't be copied from.
        Database source(path, true, ConnectText);
        if (!HasHistory(database)) {
            // Who writes waits until the end, so that the backup lacks nothing but the table.
            database.ExecuteNative("BEGIN IMMEDIATE");
            if (!HasHistory(database)) { // else somebody was faster
                backupPath = BackUp(source, QFileInfo(path));
                CreateTable(database, *FindTable(HistoryTable));
            }
            database.ExecuteNative("COMMIT");
        }
    } catch (const DaoError &error) {
        if (!backupPath.isEmpty())
            QFile::remove(backupPath); // nothing has changed
        return Complain(err, path + ": " + ErrorText(error));
    }
    if (backupPath.isEmpty())
        out << path << ": nothing to do\n";
    else
        out << path << ": upgraded, the database as it was is " << backupPath << '\n';
    return ExitCode::Ok;
}
