#include "data/dao/Database.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "data/dao/SqlText.h"
#include "data/dao/postgres/OpenPostgres.h"
#include "data/dao/postgres/ServerFile.h"
#include "data/dao/sqlite/SqliteConnection.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <sys/stat.h>

namespace {

constexpr auto Source = DaoErrors::DatabaseSource;

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

/// Opens the file, or the database on a server that the file stands for.
std::unique_ptr<Connection> Open(const QString &localPath, bool isReadOnly)
{
    CheckExists(localPath);
    if (const auto settings = ServerFile::SettingsOf(localPath))
        return OpenPostgres(*settings,
                            isReadOnly ? ServerAccess::ReadOnly : ServerAccess::ReadWrite);
    using Access = SqliteConnection::Access;
    try {
        return std::make_unique<SqliteConnection>(localPath, isReadOnly ? Access::ReadOnly
                                                                        : Access::ReadWrite);
    } catch (const DaoError &error) {
        if (error.number == DaoErrors::CorruptFile && IsOldEngineFile(localPath))
            throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, HowToImport(localPath));
        throw;
    }
}

constexpr auto PropertyTable = "DBProperty";
constexpr ColumnDefinition PropertyColumns[]
    = {{"Name", ColumnType::Text, 0, true}, {"Value", ColumnType::Text}};

/// Hands every row on and keeps none.
class VisitedRows : public RowReceiver
{
public:
    explicit VisitedRows(const Database::RowVisitor &visit)
        : m_visit(visit)
    {
    }

    void Columns(std::vector<QString> names) override { m_values.resize(names.size()); }
    void EndRow() override
    {
        const char *at = m_block.EndRow();
        for (RowValue &value : m_values)
            value = ReadValue(at);
        m_visit(m_values);
        m_block.Reuse();
    }

private:
    const Database::RowVisitor &m_visit;
    std::vector<RowValue> m_values;
};

} // namespace

Database::Database(const QString &localPath, bool isReadOnly, const QString &connect)
    : m_connection(Open(localPath, isReadOnly))
{
    if (m_connection->Columns(PropertyTable).empty())
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, localPath);
    const QString hash = Property("PasswordHash");
    if (PasswordHash(Property("PasswordSalt"), PasswordOf(connect)) != hash)
        throw DaoErrors::Make(DaoErrors::InvalidPassword, Source);
}

Database::Database(std::unique_ptr<Connection> connection, const QString &connect)
    : m_connection(std::move(connection))
{
    ExecuteNative(CreateTableSql(*m_connection, PropertyTable, PropertyColumns));
    const QString salt = QString::number(QRandomGenerator::system()->generate64(), 16);
    SetProperty("PasswordSalt", salt);
    SetProperty("PasswordHash", PasswordHash(salt, PasswordOf(connect)));
}

std::unique_ptr<Database> Database::Create(const QString &localPath, const QString &connect)
{
    if (QFile::exists(localPath))
        throw DaoErrors::Make(DaoErrors::FileExists, Source, localPath);
    std::unique_ptr<Database> database(new Database(
        std::make_unique<SqliteConnection>(localPath, SqliteConnection::Access::Create), connect));
    ::chmod(QFile::encodeName(localPath), 0660);
    return database;
}

std::unique_ptr<Database> Database::CreateOnServer(const QString &settings, const QString &connect)
{
    auto connection = OpenPostgres(settings, ServerAccess::Create);
    connection->ExecuteScript("BEGIN");
    if (!connection->Columns(PropertyTable).empty())
        throw DaoErrors::Make(DaoErrors::FileExists, Source, settings);
    return std::unique_ptr<Database>(new Database(std::move(connection), connect));
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString &sql)
{
    RowStore rows;
    m_connection->Read(m_connection->Translated(sql), rows);
    return std::make_unique<Recordset>(std::move(rows), QString(Source));
}

void Database::Execute(const QString &sql)
{
    m_recordsAffected = 0;
    m_recordsAffected = m_connection->Execute(m_connection->Translated(sql));
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
    ExecuteNative("INSERT INTO DBProperty VALUES (" + SqlQuoted(name) + ", " + SqlQuoted(value)
                  + ") ON CONFLICT (Name) DO UPDATE SET Value = excluded.Value");
}

void Database::VisitRows(const QString &sql, const RowVisitor &visit)
{
    VisitedRows rows(visit);
    m_connection->Read(sql, rows);
}
