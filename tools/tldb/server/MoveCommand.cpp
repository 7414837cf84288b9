#include "tldb/Commands.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/NewDatabase.h"
#include "tldb/server/CopyToServer.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>

namespace {

/// The file that names the server comes first: where it can't be written, nothing stays there.
void Keep(Database &server, const QString &serverPath, const QString &settings)
{
    WriteServerFile(serverPath, settings);
    try {
        server.ExecuteNative("COMMIT");
    } catch (const DaoError &) {
        QFile::remove(serverPath);
        throw;
    }
}

} // namespace

int RunMove(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString folder = arguments.positionalArguments().first();
    const QString settings = arguments.value("server");
    const QString path = DatabasePath(folder);
    const QString serverPath = ServerFilePath(folder);
    if (settings.isEmpty())
        return Complain(err, "move: --server is wanted; see tldb move --help", ExitCode::WrongUse);
    if (QFile::exists(serverPath))
        return Complain(err, serverPath + ": the file exists already");
    FindingReport report(out);
    CopyCount count;
    QString place = path; ///< what an error is of
    try {
        Database file = OpenToRead(path);
        const auto server = Database::CreateOnServer(settings, ConnectText);
        count = CopyToServer(file, *server, report.found, out);
        place = serverPath;
        if (report.findings == 0)
            Keep(*server, serverPath, settings);
    } catch (const DaoError &error) {
        return Complain(err, place + ": " + ErrorText(error));
    }
    if (report.findings > 0)
        return Complain(err, QString("%1: not moved, %2 findings; nothing is on the server")
                                 .arg(path)
                                 .arg(report.findings));
    const auto absolute
        = [&folder](const char *name) { return QDir(folder).absoluteFilePath(name); };
    out << QString("%1: copied, %2 tables, %3 rows; the file is as it was\n")
               .arg(path)
               .arg(count.tables)
               .arg(count.rows)
        << "Before anybody works on, put the file that names the server in its place:\n"
        << QString("mv \"%1\" \"%2\"\nmv \"%3\" \"%1\"\n")
               .arg(absolute("TLDB0010.MDB"), absolute("TLDB0010-FILE.MDB"),
                    absolute("TLDB0010-SERVER.MDB"));
    return ExitCode::Ok;
}
