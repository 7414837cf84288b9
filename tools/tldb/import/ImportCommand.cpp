#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/NewDatabase.h"
#include "tldb/import/ImportTable.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace {

bool IsSameFile(const QString &a, const QString &b)
{
    const QString path = QFileInfo(a).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(b).canonicalFilePath();
}

/// Copies one table. One whose definition can't be read or taken over is a finding and leaves the
/// others to be copied.
ImportCount ImportNamedTable(OldDatabase &old, Database &database, const QString &name,
                             const FindingReport &report)
{
    database.ExecuteNative("SAVEPOINT OldTable");
    ImportCount count;
    try {
        const auto table = old.OpenTable(name);
        count = ImportTable(database, name, *table, report.found, report.noted);
    } catch (const OldDatabaseError &error) {
        report.found({name, {}, {}, error.what});
    } catch (const DaoError &error) {
        if (error.number != DaoErrors::SyntaxError)
            throw;
        database.ExecuteNative("ROLLBACK TO OldTable");
        report.found({name, {}, {}, "the table can't be made: " + ErrorText(error)});
    }
    database.ExecuteNative("RELEASE OldTable");
    return count;
}

/// Copies every table in one transaction, a line for each to `out`.
void ImportTables(OldDatabase &old, Database &database, QTextStream &out,
                  const FindingReport &report)
{
    const QStringList names = old.TableNames();
    database.ExecuteNative("BEGIN");
    for (const QString &name : names) {
        const ImportCount count = ImportNamedTable(old, database, name, report);
        out << QString("%1: %2 rows read, %3 written\n")
                   .arg(name)
                   .arg(count.read)
                   .arg(count.written);
    }
    for (const TableDefinition &table : Tables())
        if (!table.isOptional && !names.contains(QLatin1String(table.name), Qt::CaseInsensitive))
            report.found({table.name, {}, {}, "the old database lacks the table"});
    if (const auto version = old.AccessVersion())
        database.SetProperty("AccessVersion", *version);
    database.ExecuteNative("COMMIT");
}

} // namespace

int RunImport(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString oldPath = arguments.positionalArguments().at(0);
    const QString folder = arguments.positionalArguments().at(1);
    const QString path = DatabasePath(folder);
    if (IsSameFile(oldPath, path))
        return Complain(err, path
                                 + ": the old database has the name that the new one gets; move it "
                                   "elsewhere or give it another name first");
    FindingReport report(out);
    try {
        OldDatabase old(oldPath);
        NewDatabase database(folder, arguments.value("server"));
        ImportTables(old, database.Content(), out, report);
        CheckDatabase(database.Content(), report.found, report.noted);
        database.Finish();
    } catch (const OldDatabaseError &error) {
        return Complain(err, oldPath + ": " + error.what);
    } catch (const DaoError &error) {
        return Complain(err, path + ": " + ErrorText(error));
    }
    out << QString("%1: imported, %2 findings, %3 notes\n")
               .arg(path)
               .arg(report.findings)
               .arg(report.notes);
    return report.findings == 0 ? ExitCode::Ok : ExitCode::Found;
}
