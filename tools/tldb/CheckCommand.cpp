#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/DatabaseCheck.h"
#include "tldb/NewDatabase.h"

#include <QCommandLineParser>
#include <QFile>

namespace {

/// Runs one check; a file that can't be read further is a finding, and the next check has its turn.
template <typename Check>
void Guarded(const QString &table, const FindingSink &found, Check &&check)
{
    try {
        check();
    } catch (const DaoError &error) {
        found({table, {}, {}, "can't be read: " + ErrorText(error)});
    }
}

/// Runs every check. Returns the number of rows that were read.
qint64 CheckDatabase(const QString &path, const FindingSink &found, const FindingSink &noted)
{
    // What a crash interrupted is rolled back by the next one who opens the file for writing.
    const bool isInterrupted = QFile::exists(path + "-journal");
    Database database(path, !isInterrupted, ConnectText);
    Guarded({}, found, [&] { CheckIntegrity(database, found); });
    Guarded({}, found, [&] { CheckProperties(database, found); });
    Guarded({}, found, [&] { CheckSchema(database, found, noted); });
    qint64 rowCount = 0;
    for (const TableDefinition &table : Tables())
        Guarded(table.name, found, [&] { rowCount += CheckValues(database, table, found); });
    Guarded({}, found, [&] { CheckRelations(database, found); });
    return rowCount;
}

} // namespace

int RunCheck(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString path = DatabasePath(arguments.positionalArguments().first());
    qint64 findings = 0;
    qint64 notes = 0;
    qint64 rowCount = 0;
    const FindingSink found = [&](const Finding &finding) {
        out << ToLine(finding) << '\n';
        ++findings;
    };
    const FindingSink noted = [&](const Finding &note) {
        out << "note: " << ToLine(note) << '\n';
        ++notes;
    };
    try {
        rowCount = CheckDatabase(path, found, noted);
    } catch (const DaoError &error) {
        if (error.number != DaoErrors::InvalidPassword)
            return Complain(err, path + ": " + ErrorText(error));
        found({{}, {}, {}, ErrorText(error)});
    }
    out << QString("%1: %2 tables, %3 rows read, %4 findings, %5 notes\n")
               .arg(path)
               .arg(Tables().size())
               .arg(rowCount)
               .arg(findings)
               .arg(notes);
    return findings == 0 ? ExitCode::Ok : ExitCode::Found;
}
