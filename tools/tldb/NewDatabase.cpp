#include "tldb/NewDatabase.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "tldb/server/CopyToServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

constexpr auto Source = "tldb";

} // namespace

QString DatabasePath(const QString &folder)
{
    return QDir(folder).filePath("TLDB0010.MDB");
}

Database OpenToRead(const QString &path)
{
    const bool isInterrupted = QFile::exists(path + "-journal");
    return Database(path, !isInterrupted, ConnectText);
}

QString ErrorText(const DaoError &error)
{
    static constexpr struct
    {
        int number;
        const char *text;
    } texts[] = {
        {DaoErrors::DuplicateKey, "another row has this key"},
        {DaoErrors::FileNotFound, "the database does not exist"},
        {DaoErrors::FileExists, "the database exists already"},
        {DaoErrors::Locked, "another program has the database locked"},
        {DaoErrors::InvalidPassword, "the password does not open the database"},
        {DaoErrors::NullNotAllowed, "a column of the key is null"},
        {DaoErrors::CannotUpdate, "the database can't be written"},
    };
    for (const auto &entry : texts)
        if (entry.number == error.number)
            return entry.text;
    // Of a server it may be its settings, or how its database was made.
    if (error.number == DaoErrors::UnrecognizedFormat)
        return "not a database of the system (" + error.detail + ')';
    // The library's own words are English; the description is in the operator's language.
    return QString("database error %1: %2").arg(error.number).arg(error.detail);
}

NewDatabase::NewDatabase(const QString &folder, const QString &server)
    : m_path(DatabasePath(folder))
    , m_buildPath(QString("%1.%2.new").arg(m_path).arg(QCoreApplication::applicationPid()))
    , m_server(server)
{
    if (QFile::exists(m_path))
        throw DaoErrors::Make(DaoErrors::FileExists, Source, m_path);
    if (!QDir().mkpath(folder))
        throw DaoErrors::Make(DaoErrors::CannotUpdate, Source, folder);
    if (!m_server.isEmpty()) // what speaks against it is told before the work
        Database::CreateOnServer(m_server, ConnectText);
    QFile::remove(m_buildPath);
    try {
        m_database = Database::Create(m_buildPath, ConnectText);
        CreateTables(*m_database);
    } catch (const DaoError &) {
        m_database.reset();
        QFile::remove(m_buildPath);
        throw;
    }
}

NewDatabase::~NewDatabase()
{
    m_database.reset();
    QFile::remove(m_buildPath);
}

void NewDatabase::Finish()
{
    if (!m_server.isEmpty())
        CopyToItsServer();
    m_database.reset();
    if (!QFile::rename(m_buildPath, m_path))
        throw DaoErrors::Make(QFile::exists(m_path) ? DaoErrors::FileExists
                                                    : DaoErrors::CannotUpdate,
                              Source, m_path);
}

void NewDatabase::CopyToItsServer()
{
    const auto server = Database::CreateOnServer(m_server, ConnectText);
    QString findings;
    QString rows;
    QTextStream out(&rows);
    CopyToServer(
        *m_database, *server,
        [&findings](const Finding &finding) { findings += ToLine(finding) + "; "; }, out);
    if (!findings.isEmpty())
        throw DaoErrors::Make(DaoErrors::TypeMismatch, Source, findings);
    m_database.reset();
    QFile::remove(m_buildPath);
    WriteServerFile(m_buildPath, m_server);
    server->ExecuteNative("COMMIT");
}
