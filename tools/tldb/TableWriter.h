#pragma once

#include "data/dao/Database.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <span>
#include <variant>

/// Who wrote a row and when.
struct RowStamp
{
    QString program;
    QString date; ///< stored form
    QString time; ///< HHMMSS
};

/// Puts rows into a table of the system: `columns` are bound, the others are blank or 0. A column
/// that the table does not have is an error. Throws DaoError.
std::unique_ptr<RowLoader> LoadSystemRows(Database &database, const char *table,
                                          const QStringList &columns, const RowStamp &stamp);

/// Ties a column to a member of a row structure.
template <typename Row>
struct RowField
{
    const char *column;
    std::variant<qint64 Row::*, double Row::*, QString Row::*> member;
};

/// Writes row structures into a table. Every routine throws DaoError.
template <typename Row>
class TableWriter
{
public:
    TableWriter(Database &database, const char *table, std::span<const RowField<Row>> fields,
                const RowStamp &stamp)
        : m_fields(fields)
        , m_loader(LoadSystemRows(database, table, ColumnsOf(fields), stamp))
    {
    }

    void Insert(const Row &row)
    {
        for (size_t field = 0; field < m_fields.size(); ++field)
            std::visit([&](auto member) { m_loader->Bind(int(field), row.*member); },
                       m_fields[field].member);
        m_loader->Insert();
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
    std::unique_ptr<RowLoader> m_loader;
};
