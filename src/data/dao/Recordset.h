#pragma once

#include "data/dao/Rows.h"

#include <QString>
#include <vector>

class Recordset;

/// A handle on one row of a recordset, whatever the recordset's current row is; it must not outlive
/// the recordset. Values are decoded when asked for and read as the recordset's own are.
class Record
{
public:
    Record() = default; ///< no row

    bool IsNull(int field) const { return Value(field).IsNull(); }
    QString Text(int field) const { return Value(field).Text(); }
    double Number(int field) const { return Value(field).Number(); }
    qint64 Whole(int field) const { return Value(field).Whole(); }
    QString SqlLiteral(int field) const { return Value(field).SqlLiteral(); }

private:
    friend Recordset;
    Record(const Recordset &rows, int row)
        : m_rows(&rows)
        , m_row(row)
    {
    }
    RowValue Value(int field) const;

    const Recordset *m_rows = nullptr;
    int m_row = 0;
};

/// The rows of a query, read whole when opened and kept in one compact block: the record count is
/// free, and nothing of the database stays locked. Fields are addressed by their position (0 is the
/// first), found once by name.
class Recordset
{
public:
    explicit Recordset(RowStore store, const QString &source);

    bool IsEof() const { return m_row >= m_store.rows.size(); }
    int RecordCount() const { return int(m_store.rows.size()); }
    void MoveFirst();
    void MoveLast();
    void MoveNext(); ///< throws DaoError at the end

    /// Gives the rows up. A second call throws DaoError.
    void Close();

    /// Any row, 0 the first. One that is not there, or not any more, has a null in every field.
    Record At(int row) const { return {*this, row}; }

    /// The position of a column, its name compared without case; -1 for an unknown one.
    int FieldIndex(QStringView name) const;
    int FieldCount() const { return int(m_store.names.size()); }
    QString FieldName(int field) const { return m_store.names[size_t(field)]; }

    // Values of the current row. A field that is not there, and any field when there is no current
    // row, reads as null.
    bool IsNull(int field) const { return Current(field).IsNull(); }

    /// "" for null; a number in its shortest 15-digit form.
    QString Text(int field) const { return Current(field).Text(); }

    /// 0 for null; the leading number of a text.
    double Number(int field) const { return Current(field).Number(); }

    /// A whole number exactly, any other cut toward zero; 0 for null and for what has no room.
    qint64 Whole(int field) const { return Current(field).Whole(); }

    /// The value as a statement gives it, so that it is stored again just as it is.
    QString SqlLiteral(int field) const { return Current(field).SqlLiteral(); }

private:
    friend Record;

    void Select(size_t row);
    RowValue Current(int field) const;

    QString m_source;
    RowStore m_store;
    std::vector<RowValue> m_fields; ///< of the current row
    size_t m_row = 0;
    bool m_isOpen = true;
};
