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

namespace {

constexpr auto Source = "tldb";

bool HasHistory(Database &database)
{
    return !ColumnsInFile(database, HistoryTable).isEmpty();
}

/// Copies a database, while nobody can write to it, to a file beside its own that is named after
/// the moment, and returns the new file's path. The copy gets its name when it is whole, and the
/// file permissions before it has content. Empty for a database that has backups of its own.
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
        if (!database.Engine().CopyTo(buildPath)) {
            QFile::remove(buildPath);
            return {};
        }
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
    bool isUpgraded = false;
    try {
        Database database(path, false, ConnectText);
        // Who holds the lock can't be copied from.
        Database source(path, true, ConnectText);
        if (!HasHistory(database)) {
            // Who writes waits until the end, so that the backup lacks nothing but the table.
            database.BeginTrans(false);
            if (!HasHistory(database)) { // else somebody was faster
                backupPath = BackUp(source, QFileInfo(path));
                CreateTable(database, *FindTable(HistoryTable));
                // Who may write an answer and not its history would send it and never mark it.
                database.Engine().CopyRights("TLSP0010", HistoryTable);
                isUpgraded = true;
            }
            database.CommitTrans();
        }
    } catch (const DaoError &error) {
        if (!backupPath.isEmpty())
            QFile::remove(backupPath); // nothing has changed
        return Complain(err, path + ": " + ErrorText(error));
    }
    if (!isUpgraded)
        out << path << ": nothing to do\n";
    else if (backupPath.isEmpty())
        out << path << ": upgraded\n";
    else
        out << path << ": upgraded, the database as it was is " << backupPath << '\n';
    return ExitCode::Ok;
}
