#include "tldb/TableWriter.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"

#include <sqlite3.h>

namespace {

constexpr auto Source = "tldb";

/// The columns that tell who wrote a row and when.
const QStringList StampColumns = {"UpdPGName", "UpdDate", "UpdTime"};

} // namespace

QString QuotedName(QString name)
{
    return '"' + name.replace('"', "\"\"") + '"';
}

InsertStatement::InsertStatement(Database &database, const char *table, const QStringList &columns,
                                 const RowStamp &stamp)
    : m_database(database)
{
    const TableDefinition *definition = FindTable(table);
    if (!definition)
        throw DaoErrors::Make(DaoErrors::ItemNotFound, Source, table);
    const QStringList bound = columns + StampColumns;
    QStringList values;
    qsizetype boundCount = 0;
    for (const ColumnDefinition &column : definition->columns) {
        const qsizetype at = bound.indexOf(column.name);
        boundCount += at >= 0 && at < columns.size() ? 1 : 0;
        if (at >= 0)
            values += '?' + QString::number(at + 1);
        else
            values += column.IsText() ? "''" : "0";
    }
    if (boundCount != columns.size())
        throw DaoErrors::Make(DaoErrors::ItemNotFound, Source, columns.join(", "));
    Prepare(QString("INSERT INTO %1 VALUES (%2)").arg(table, values.join(", ")));
    int column = int(columns.size());
    for (const QString &value : {stamp.program, stamp.date, stamp.time})
        Bind(column++, value);
}

InsertStatement::InsertStatement(Database &database, const QString &table,
                                 const QStringList &columns)
    : m_database(database)
{
    QStringList names;
    for (const QString &column : columns)
        names += QuotedName(column);
    Prepare("INSERT INTO " + QuotedName(table) + " (" + names.join(", ") + ") VALUES ("
            + QStringList(columns.size(), "?").join(", ") + ')');
}

void InsertStatement::Prepare(const QString &sql)
{
    const QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v2(m_database.Connection(), utf8, int(utf8.size()), &m_statement, nullptr)
        != SQLITE_OK)
        throw DaoErrors::FromSqlite(m_database.Connection(), Source);
}

InsertStatement::~InsertStatement()
{
    sqlite3_finalize(m_statement);
}

void InsertStatement::Bind(int column, qint64 value)
{
    sqlite3_bind_int64(m_statement, column + 1, value);
}

void InsertStatement::Bind(int column, double value)
{
    sqlite3_bind_double(m_statement, column + 1, value);
}

void InsertStatement::Bind(int column, const QString &value)
{
    const QByteArray utf8 = value.toUtf8();
    sqlite3_bind_text(m_statement, column + 1, utf8, int(utf8.size()), SQLITE_TRANSIENT);
}

void InsertStatement::Bind(int column, const QByteArray &value)
{
    // A zero-length blob, not null, for bytes that are there but none.
    sqlite3_bind_blob(m_statement, column + 1, value.constData(), int(value.size()),
                      SQLITE_TRANSIENT);
}

void InsertStatement::BindNull(int column)
{
    sqlite3_bind_null(m_statement, column + 1);
}

void InsertStatement::Insert()
{
    const int result = sqlite3_step(m_statement);
    sqlite3_reset(m_statement);
    if (result != SQLITE_DONE)
        throw DaoErrors::FromSqlite(m_database.Connection(), Source);
}
