#pragma once

#include "data/dao/RowBlock.h"

#include <QString>
#include <vector>

struct sqlite3_stmt;

/// The rows of a query, read whole when opened and kept in one compact block: the record count is
/// free, and nothing of the database stays locked. Fields are addressed by their position (0 is the
/// first), found once by name.
class Recordset
{
public:
    /// Takes every row of a prepared statement. Throws DaoError.
    Recordset(sqlite3_stmt *statement, const QString &source);

    bool IsEof() const { return m_row >= m_rows.size(); }
    int RecordCount() const { return int(m_rows.size()); }
    void MoveFirst();
    void MoveLast();
    void MoveNext(); ///< throws DaoError at the end

    /// Gives the rows up. A second call throws DaoError.
    void Close();

    /// The position of a column, its name compared without case. Throws DaoError for an unknown
    /// one.
    int FieldIndex(QStringView name) const;
    int FieldCount() const { return int(m_names.size()); }
    QString FieldName(int field) const { return m_names[size_t(field)]; }

    // Values of the current row; each throws DaoError when there is none.
    bool IsNull(int field) const;
    QString Text(int field) const;  ///< "" for null; a number in its shortest 15-digit form
    double Number(int field) const; ///< 0 for null; the leading number of a text

    /// The value as a statement gives it, so that it is stored again just as it is.
    QString SqlLiteral(int field) const;

    QString Text(QStringView name) const { return Text(FieldIndex(name)); }
    double Number(QStringView name) const { return Number(FieldIndex(name)); }

private:
    struct Field
    {
        char type;
        const char *data;
        qsizetype length;
    };

    void ReadRow(sqlite3_stmt *statement);
    void Select(size_t row);
    const Field &Current(int field) const;

    QString m_source;
    std::vector<QString> m_names;
    RowBlock m_block; ///< per field: its type, then its number, or its length and bytes
    std::vector<const char *> m_rows; ///< where each row begins in the block
    std::vector<Field> m_fields;      ///< of the current row
    size_t m_row = 0;
    bool m_isOpen = true;
};
