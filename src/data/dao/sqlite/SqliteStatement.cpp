#include "data/dao/sqlite/SqliteStatement.h"

#include "data/dao/sqlite/SqliteConnection.h"

#include <sqlite3.h>

namespace {

class SqliteLoader : public RowLoader
{
public:
    SqliteLoader(sqlite3 *connection, const QString &sql)
        : m_connection(connection)
        , m_statement(connection, sql)
    {
    }

    void Bind(int column, qint64 value) override
    {
        sqlite3_bind_int64(m_statement.handle, column + 1, value);
    }
    void Bind(int column, double value) override
    {
        sqlite3_bind_double(m_statement.handle, column + 1, value);
    }
    void Bind(int column, const QString &value) override
    {
        const QByteArray utf8 = value.toUtf8();
        sqlite3_bind_text(m_statement.handle, column + 1, utf8, int(utf8.size()), SQLITE_TRANSIENT);
    }
    void Bind(int column, const QByteArray &value) override
    {
        // A zero-length blob, not null, for bytes that are there but none.
        sqlite3_bind_blob(m_statement.handle, column + 1, value.constData(), int(value.size()),
                          SQLITE_TRANSIENT);
    }
    void BindNull(int column) override { sqlite3_bind_null(m_statement.handle, column + 1); }

    void Insert() override
    {
        const int result = sqlite3_step(m_statement.handle);
        sqlite3_reset(m_statement.handle);
        if (result != SQLITE_DONE)
            throw SqliteConnection::ErrorOf(m_connection);
    }
    void Finish() override {}

private:
    sqlite3 *m_connection;
    SqliteStatement m_statement;
};

} // namespace

SqliteStatement::SqliteStatement(sqlite3 *connection, const QString &sql)
{
    const QByteArray utf8 = sql.toUtf8();
    const char *tail = nullptr;
    if (sqlite3_prepare_v2(connection, utf8.data(), int(utf8.size()), &handle, &tail) != SQLITE_OK)
        throw SqliteConnection::ErrorOf(connection);
    // The library takes the first statement and stops at a NUL.
    const QByteArrayView rest(tail, utf8.data() + utf8.size() - tail);
    if (!rest.trimmed().isEmpty()) {
        sqlite3_finalize(handle);
        throw DaoErrors::Make(DaoErrors::SyntaxError, DaoErrors::DatabaseSource,
                              QString::fromUtf8(rest));
    }
}

SqliteStatement::~SqliteStatement()
{
    sqlite3_finalize(handle);
}

std::unique_ptr<RowLoader> SqliteConnection::LoadRows(const QString &table,
                                                      const QStringList &columns)
{
    QStringList names;
    for (const QString &column : columns)
        names += QuotedName(column);
    return std::make_unique<SqliteLoader>(
        m_handle, "INSERT INTO " + QuotedName(table) + " (" + names.join(", ") + ") VALUES ("
                      + QStringList(columns.size(), "?").join(", ") + ')');
}
