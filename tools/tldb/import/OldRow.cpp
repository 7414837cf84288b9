#include "tldb/import/OldRow.h"

#include <algorithm>
#include <mdbtools.h>

namespace {

constexpr int NumberSize = 2;
constexpr int BitsPerByte = 8;

/// A row is the count of its columns, the values of fixed length, those of variable length, the
/// places of these, the last one's end first, their count, and a bit for each column that is not
/// null.
class Row
{
public:
    explicit Row(QByteArrayView bytes)
        : m_bytes(bytes)
        , m_columnCount(Number(0))
        , m_bitsStart(int(bytes.size()) - (m_columnCount + BitsPerByte - 1) / BitsPerByte)
        , m_variableCount(Number(m_bitsStart - NumberSize))
    {
    }

    bool IsWhole() const { return m_columnCount > 0 && m_variableCount >= 0 && PlacesStart() > 0; }
    bool Has(const MdbColumn &column) const
    {
        return column.row_col_num < m_columnCount
               && (column.is_fixed || int(column.var_col_num) < m_variableCount);
    }
    bool IsNull(const MdbColumn &column) const
    {
        const int at = m_bitsStart + column.row_col_num / BitsPerByte;
        return (uchar(m_bytes[at]) >> column.row_col_num % BitsPerByte & 1) == 0;
    }
    int ColumnCount() const { return m_columnCount; }
    int VariableCount() const { return m_variableCount; }
    int PlacesStart() const { return m_bitsStart - NumberSize * (m_variableCount + 2); }

    /// Where the value of variable length of this number begins and the one before it ends.
    int Place(int variable) const { return Number(m_bitsStart - NumberSize * (variable + 2)); }

private:
    /// -1 outside of the row.
    int Number(int at) const
    {
        if (at < 0 || at + NumberSize > m_bytes.size())
            return -1;
        return uchar(m_bytes[at]) | uchar(m_bytes[at + 1]) << BitsPerByte;
    }

    QByteArrayView m_bytes;
    int m_columnCount;
    int m_bitsStart;
    int m_variableCount;
};

} // namespace

bool IsSoundRow(const S_MdbTableDef &table, QByteArrayView bytes)
{
    // Without columns of variable length their part is missing.
    if (table.num_var_cols == 0)
        return true;
    const Row row(bytes);
    if (!row.IsWhole() || row.Place(row.VariableCount()) != row.PlacesStart())
        return false;
    for (int variable = 0; variable < row.VariableCount(); ++variable)
        if (row.Place(variable) > row.Place(variable + 1))
            return false;
    int fixedEnd = NumberSize;
    int columnCount = 0; // those that were deleted are counted on
    for (unsigned int index = 0; index < table.columns->len; ++index) {
        const auto &column = *static_cast<MdbColumn *>(g_ptr_array_index(table.columns, index));
        columnCount = std::max(columnCount, column.row_col_num + 1);
        if (!row.Has(column))
            continue;
        const int variable = int(column.var_col_num);
        if (column.is_fixed && column.col_type != MDB_BOOL)
            fixedEnd = std::max(fixedEnd, NumberSize + column.fixed_offset + column.col_size);
        else if (!column.is_fixed && row.IsNull(column)
                 && row.Place(variable) != row.Place(variable + 1))
            return false;
    }
    // In a row from before a column was added or deleted something else may stand in between.
    const bool isOfTable
        = row.ColumnCount() == columnCount && columnCount == int(table.columns->len);
    return isOfTable ? row.Place(0) == fixedEnd : row.Place(0) >= fixedEnd;
}
