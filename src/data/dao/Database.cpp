#include "data/dao/Database.h"

#include "data/dao/DaoError.h"
#include "data/dao/Dialect.h"
#include "data/dao/SqlFunctions.h"
#include "data/dao/SqlText.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <sqlite3.h>
#include <sys/stat.h>

namespace {

constexpr auto Source = "DAO.Database";
constexpr int BusyTimeoutMs = 10'000;

QString PasswordOf(const QString &connect)
{
    for (const QString &part : connect.split(';'))
        if (part.startsWith("PWD=", Qt::CaseInsensitive))
            return part.mid(4);
    return {};
}

QString PasswordHash(const QString &salt, const QString &password)
{
    const QByteArray hash
        = QCryptographicHash::hash((salt + password).toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex());
}

/// What to do with a file of the original engine's.
QString HowToImport(const QString &localPath)
{
    const QFileInfo file(localPath);
    const QString folder = file.absolutePath();
    const QString oldName = folder + '/' + file.completeBaseName() + "-OLD." + file.suffix();
    return QString(
               "旧形式のデータベースです。ファイルの名前を変えてから、新しい形式にインポートして"
               "ください:\r\nmv \"%1\" \"%2\"\r\ntldb import \"%2\" \"%3\"\r\n")
        .arg(file.absoluteFilePath(), oldName, folder);
}

void CheckExists(const QString &localPath)
{
    if (!QFile::exists(localPath))
        throw DaoErrors::Make(DaoErrors::FileNotFound, Source, localPath);
}

/// Only for a file that is no database of ours: closing a file ends every lock that this process
/// has on it, those of the library's own connections among them.
bool IsOldEngineFile(const QString &localPath)
{
    QFile file(localPath);
    return file.open(QIODevice::ReadOnly) && file.peek(OldEngineHeader.size()) == OldEngineHeader;
}

/// A prepared statement, finalized when it goes out of scope.
struct Statement
{
    Statement(sqlite3 *connection, const QString &sql)
    {
        const QByteArray utf8 = sql.toUtf8();
        const char *tail = nullptr;
        if (sqlite3_prepare_v2(connection, utf8.data(), int(utf8.size()), &handle, &tail)
            != SQLITE_OK)
            throw DaoErrors::FromSqlite(connection, Source);
        // The library takes the first statement and stops at a NUL.
        const QByteArrayView rest(tail, utf8.data() + utf8.size() - tail);
        if (!rest.trimmed().isEmpty()) {
            sqlite3_finalize(handle);
            throw DaoErrors::Make(DaoErrors::SyntaxError, Source, QString::fromUtf8(rest));
        }
    }
    ~Statement() { sqlite3_finalize(handle); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    sqlite3_stmt *handle = nullptr;
};

} // namespace

Database::Database(const QString &localPath, int openFlags)
{
    // One thread uses a database: its locks against others would cost a tenth of every load.
    const int result = sqlite3_open_v2(localPath.toUtf8(), &m_connection,
                                       openFlags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK) {
        const DaoError error = DaoErrors::FromSqlite(m_connection, Source);
        sqlite3_close(m_connection);
        throw error;
    }
    sqlite3_extended_result_codes(m_connection, 1);
    sqlite3_busy_timeout(m_connection, BusyTimeoutMs);
    AddSqlFunctions(m_connection);
}

Database::Database(const QString &localPath, bool isReadOnly, const QString &connect)
    : Database((CheckExists(localPath), localPath),
               isReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE)
{
    try {
        // A list of a hundred thousand lines fits into the cache and needs no file to be sorted; a
        // longer one is sorted beside the reading.
        ExecuteNative("PRAGMA synchronous=FULL; PRAGMA foreign_keys=OFF;"
                      "PRAGMA cache_size=-64000; PRAGMA threads=2;");
    } catch (const DaoError &error) {
        if (error.number == DaoErrors::CorruptFile && IsOldEngineFile(localPath))
            throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, HowToImport(localPath));
        throw;
    }
    // Texts are read as they stand in the file.
    const auto property = OpenRecordset("SELECT 1 FROM sqlite_master, pragma_encoding"
                                        " WHERE name = 'DBProperty' AND encoding = 'UTF-8'");
    if (property->IsEof())
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, localPath);
    const QString hash = Property("PasswordHash");
    if (PasswordHash(Property("PasswordSalt"), PasswordOf(connect)) != hash)
        throw DaoErrors::Make(DaoErrors::InvalidPassword, Source);
}

Database::~Database()
{
    sqlite3_close(m_connection);
}

std::unique_ptr<Database> Database::Create(const QString &localPath, const QString &connect)
{
    if (QFile::exists(localPath))
        throw DaoErrors::Make(DaoErrors::FileExists, Source, localPath);
    std::unique_ptr<Database> database(
        new Database(localPath, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
    database->ExecuteNative(
        "CREATE TABLE DBProperty (Name TEXT PRIMARY KEY COLLATE NOCASE, Value TEXT)");
    const QString salt = QString::number(QRandomGenerator::system()->generate64(), 16);
    database->SetProperty("PasswordSalt", salt);
    database->SetProperty("PasswordHash", PasswordHash(salt, PasswordOf(connect)));
    ::chmod(QFile::encodeName(localPath), 0660);
    return database;
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString &sql)
{
    const Statement statement(m_connection, ToSqlite(sql));
    return std::make_unique<Recordset>(statement.handle, QString(Source));
}

void Database::Execute(const QString &sql)
{
    const Statement statement(m_connection, ToSqlite(sql));
    m_recordsAffected = 0;
    int result = SQLITE_ROW;
    while (result == SQLITE_ROW)
        result = sqlite3_step(statement.handle);
    if (result != SQLITE_DONE)
        throw DaoErrors::FromSqlite(m_connection, Source);
    m_recordsAffected = sqlite3_stmt_readonly(statement.handle) ? 0 : sqlite3_changes(m_connection);
}

QString Database::Property(const QString &name)
{
    const auto rows = OpenRecordset("SELECT Value FROM DBProperty WHERE Name = " + SqlQuoted(name));
    if (rows->IsEof())
        throw DaoErrors::Make(DaoErrors::PropertyNotFound, Source, name);
    return rows->Text(0);
}

void Database::SetProperty(const QString &name, const QString &value)
{
    ExecuteNative("INSERT OR REPLACE INTO DBProperty VALUES (" + SqlQuoted(name) + ", "
                  + SqlQuoted(value) + ')');
}

void Database::SetProgress(std::function<bool()> goOn)
{
    constexpr int OperationsPerCall = 1'000;
    m_goOn = std::move(goOn);
    sqlite3_progress_handler(
        m_connection, m_goOn ? OperationsPerCall : 0,
        [](void *self) { return static_cast<Database *>(self)->m_goOn() ? 0 : 1; }, this);
}

bool Database::IsInTransaction() const
{
    return sqlite3_get_autocommit(m_connection) == 0;
}

void Database::ExecuteNative(const QString &sql)
{
    if (sqlite3_exec(m_connection, sql.toUtf8(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw DaoErrors::FromSqlite(m_connection, Source);
}
