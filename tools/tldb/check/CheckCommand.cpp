#include "tldb/Commands.h"

#include "data/dao/DaoError.h"
#include "tldb/NewDatabase.h"
#include "tldb/check/DatabaseCheck.h"

#include <QCommandLineParser>

int RunCheck(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString path = DatabasePath(arguments.positionalArguments().first());
    FindingReport report(out);
    CheckedAmount amount;
    try {
        Database database = OpenToRead(path);
        amount = CheckDatabase(database, report.found, report.noted);
    } catch (const DaoError &error) {
        if (error.number != DaoErrors::InvalidPassword)
            return Complain(err, path + ": " + ErrorText(error));
        report.found({{}, {}, {}, ErrorText(error)});
    }
    out << QString("%1: %2 tables, %3 rows read, %4 findings, %5 notes\n")
               .arg(path)
               .arg(amount.tables)
               .arg(amount.rows)
               .arg(report.findings)
               .arg(report.notes);
    return report.findings == 0 ? ExitCode::Ok : ExitCode::Found;
}
