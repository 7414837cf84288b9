#pragma once

#include "data/dao/Database.h"

#include <QString>
#include <QStringList>
#include <span>
#include <variant>

struct sqlite3_stmt;

/// Who wrote a row and when.
struct RowStamp
{
    QString program;
    QString date; ///< stored form
    QString time; ///< HHMMSS
};

/// A name as SQL takes it, whatever characters it has.
QString QuotedName(QString name);

/// A prepared INSERT for one table. A bound value stays until the column is bound anew. Every
/// routine throws DaoError.
class InsertStatement
{
public:
    /// For a table of the system: `columns` are bound, the others are blank or 0. One that the
    /// table does not have is an error.
    InsertStatement(Database &database, const char *table, const QStringList &columns,
                    const RowStamp &stamp);

    /// For any table: all its `columns` are bound.
    InsertStatement(Database &database, const QString &table, const QStringList &columns);

    ~InsertStatement();
    InsertStatement(const InsertStatement &) = delete;
    InsertStatement &operator=(const InsertStatement &) = delete;

    // The value of a bound column, 0 is the first.
    void Bind(int column, qint64 value);
    void Bind(int column, double value);
    void Bind(int column, const QString &value);
    void Bind(int column, const QByteArray &value); ///< as bytes
    void BindNull(int column);
    void Insert();

private:
    void Prepare(const QString &sql);

    Database &m_database;
    sqlite3_stmt *m_statement = nullptr;
};

/// Ties a column to a member of a row structure.
template <typename Row>
struct RowField
{
    const char *column;
    std::variant<qint64 Row::*, double Row::*, QString Row::*> member;
};

/// Writes row structures into a table.
template <typename Row>
class TableWriter
{
public:
    TableWriter(Database &database, const char *table, std::span<const RowField<Row>> fields,
                const RowStamp &stamp)
        : m_fields(fields)
        , m_statement(database, table, ColumnsOf(fields), stamp)
    {
    }

    void Insert(const Row &row)
    {
        for (size_t field = 0; field < m_fields.size(); ++field)
            std::visit([&](auto member) { m_statement.Bind(int(field), row.*member); },
                       m_fields[field].member);
        m_statement.Insert();
    }

private:
    static QStringList ColumnsOf(std::span<const RowField<Row>> fields)
    {
        QStringList columns;
        for (const RowField<Row> &field : fields)
            columns += field.column;
        return columns;
    }

    std::span<const RowField<Row>> m_fields;
    InsertStatement m_statement;
};
