#include "data/Tables.h"
#include "data/dao/SqlText.h"
#include "data/dao/postgres/PostgresConnection.h"
#include "data/dao/postgres/PostgresErrors.h"

#include <QLocale>
#include <libpq-fe.h>
#include <vector>

namespace {

/// Names are stored in small letters, as the server writes those that are not quoted.
QString Small(QString name)
{
    for (QChar &c : name)
        if (c >= 'A' && c <= 'Z')
            c = QChar(c.unicode() + 32);
    return name;
}

QString TableId(const QString &table)
{
    return "to_regclass(" + SqlQuoted(QuotedName(Small(table))) + ')';
}

} // namespace

/// Rows on their way by COPY, in its text format.
class PostgresLoader : public RowLoader
{
public:
    PostgresLoader(PostgresConnection &connection, const QString &table, const QStringList &columns)
        : m_connection(connection.m_connection.get())
        , m_values(size_t(columns.size()), Null)
    {
        QStringList names;
        for (const QString &column : columns)
            names += QuotedName(Small(column));
        connection.Run("COPY " + QuotedName(Small(table)) + " (" + names.join(", ")
                           + ") FROM STDIN",
                       [](pg_result *) {});
    }
    ~PostgresLoader() override
    {
        if (m_isOpen)
            End("given up");
    }

    void Bind(int column, qint64 value) override { Value(column) = QByteArray::number(value); }
    void Bind(int column, double value) override
    {
        Value(column) = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    }
    void Bind(int column, const QString &value) override
    {
        QByteArray &text = Value(column);
        text.clear();
        for (const char c : value.toUtf8()) {
            switch (c) {
            case '\\':
                text += "\\\\";
                break;
            case '\t':
                text += "\\t";
                break;
            case '\n':
                text += "\\n";
                break;
            case '\r':
                text += "\\r";
                break;
            default:
                text += c;
            }
        }
    }
    void Bind(int column, const QByteArray &value) override
    {
        Value(column) = "\\\\x" + value.toHex();
    }
    void BindNull(int column) override { Value(column) = Null; }

    void Insert() override
    {
        constexpr qsizetype BytesPerCall = 64 << 10;
        for (const QByteArray &value : m_values) {
            m_rows += value;
            m_rows += '\t';
        }
        m_rows.back() = '\n';
        if (m_rows.size() >= BytesPerCall)
            SendRows();
    }

    void Finish() override
    {
        SendRows();
        const DaoError error = End(nullptr);
        if (error.number != 0)
            throw error;
    }

private:
    static constexpr const char *Null = "\\N";

    QByteArray &Value(int column) { return m_values[size_t(column)]; }

    void SendRows()
    {
        if (PQputCopyData(m_connection, m_rows.constData(), int(m_rows.size())) < 0) {
            DaoError error = End("given up");
            throw error.number != 0
                ? error
                : PostgresErrors::OfNetwork("COPY", PQerrorMessage(m_connection));
        }
        m_rows.clear();
    }

    DaoError End(const char *reason)
    {
        m_isOpen = false;
        PQputCopyEnd(m_connection, reason);
        DaoError error;
        while (PGresult *result = PQgetResult(m_connection)) {
            if (error.number == 0)
                error = PostgresErrors::Of(result);
            PQclear(result);
        }
        return error;
    }

    PGconn *const m_connection;
    std::vector<QByteArray> m_values; ///< as they are sent
    QByteArray m_rows;                ///< not yet sent
    bool m_isOpen = true;
};

std::unique_ptr<RowLoader> PostgresConnection::LoadRows(const QString &table,
                                                        const QStringList &columns)
{
    return std::make_unique<PostgresLoader>(*this, table, columns);
}

QStringList PostgresConnection::TableNames()
{
    return FirstColumn("SELECT relname FROM pg_class WHERE relkind IN ('r', 'p')"
                       " AND relnamespace = current_schema()::regnamespace ORDER BY relname");
}

std::vector<StoredColumn> PostgresConnection::Columns(const QString &table)
{
    RowStore store;
    Read("SELECT attname, upper(format_type(atttypid, atttypmod)), attnotnull,"
         " EXISTS (SELECT 1 FROM pg_index WHERE indrelid = attrelid AND indisprimary"
         " AND attnum = ANY (indkey)) FROM pg_attribute WHERE attrelid = "
             + TableId(table) + " AND attnum > 0 AND NOT attisdropped ORDER BY attnum",
         store);
    std::vector<StoredColumn> columns;
    for (const char *row : store.rows) {
        StoredColumn &column = columns.emplace_back();
        column.name = ReadValue(row).Text();
        column.type = ReadValue(row).Text().section('.', -1); // without the type's schema
        column.isNotNull = ReadValue(row).Whole() != 0;
        column.isKey = ReadValue(row).Whole() != 0;
    }
    return columns;
}

QStringList PostgresConnection::IndexedColumns(const QString &table)
{
    return FirstColumn("SELECT attname FROM pg_index JOIN pg_attribute ON attrelid = indrelid"
                       " AND attnum = indkey[0] WHERE indpred IS NULL AND indisvalid"
                       " AND indrelid = "
                       + TableId(table));
}

StoredColumn PostgresConnection::Wanted(const ColumnDefinition &column) const
{
    const QString number = column.type == ColumnType::Integer ? "BIGINT" : "DOUBLE PRECISION";
    return {column.name, column.IsText() ? "CITEXT" : number, {}, column.isKey, column.isKey};
}

void PostgresConnection::CopyRights(const QString &fromTable, const QString &toTable)
{
    // A role of number 0 stands for everybody.
    const QStringList grants = FirstColumn(
        "SELECT 'GRANT ' || privilege_type || ' ON " + QuotedName(Small(toTable))
        + " TO ' || CASE grantee WHEN 0 THEN 'PUBLIC' ELSE CAST(CAST(grantee AS regrole) AS text) "
          "END FROM pg_class, aclexplode(relacl)"
          " WHERE privilege_type IN ('SELECT', 'INSERT', 'UPDATE', 'DELETE') AND oid = "
        + TableId(fromTable));
    if (!grants.isEmpty())
        ExecuteScript(grants.join(';'));
}
