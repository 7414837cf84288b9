#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/NewDatabase.h"
#include "tldb/check/DatabaseCheck.h"

#include <QCommandLineParser>
#include <QFile>

int RunCheck(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString path = DatabasePath(arguments.positionalArguments().first());
    FindingReport report(out);
    qint64 rowCount = 0;
    try {
        // What a crash interrupted is rolled back by the next one who opens the file for writing.
        const bool isInterrupted = QFile::exists(path + "-journal");
        Database database(path, !isInterrupted, ConnectText);
        rowCount = CheckDatabase(database, report.found, report.noted);
    } catch (const DaoError &error) {
        if (error.number != DaoErrors::InvalidPassword)
            return Complain(err, path + ": " + ErrorText(error));
        report.found({{}, {}, {}, ErrorText(error)});
    }
    out << QString("%1: %2 tables, %3 rows read, %4 findings, %5 notes\n")
               .arg(path)
               .arg(Tables().size())
               .arg(rowCount)
               .arg(report.findings)
               .arg(report.notes);
    return report.findings == 0 ? ExitCode::Ok : ExitCode::Found;
}
