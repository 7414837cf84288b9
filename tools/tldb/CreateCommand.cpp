#include "tldb/Commands.h"

#include "data/dao/DaoError.h"
#include "tldb/NewDatabase.h"

#include <QCommandLineParser>

int RunCreate(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString folder = arguments.positionalArguments().first();
    try {
        NewDatabase database(folder, arguments.value("server"));
        database.Finish();
    } catch (const DaoError &error) {
        return Complain(err, DatabasePath(folder) + ": " + ErrorText(error));
    }
    out << DatabasePath(folder) << ": created\n";
    return ExitCode::Ok;
}
