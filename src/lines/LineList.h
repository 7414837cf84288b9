#pragma once

#include "lines/Line.h"
#include "lines/OrderIndex.h"

#include <functional>
#include <memory>
#include <vector>

/// Delivery lines in the order of the list: its working state from loading to the creation of the
/// answers, without a window. Rows count from 1.
class LineList
{
public:
    LineList() = default;
    LineList(LineList &&) = default;
    LineList &operator=(LineList &&) = default;

    /// Takes the rows of one of the list's statements; `step` is called for each and stops it with
    /// False, which leaves the list empty.
    bool Load(std::unique_ptr<Recordset> rows, const std::function<bool()> &step);
    void Clear() { *this = LineList(); }

    int Count() const { return int(m_lines.size()); }
    const Line &At(int row) const { return m_lines[size_t(row - 1)]; }
    Line &At(int row) { return m_lines[size_t(row - 1)]; }

    /// A line, and the row of the list that it belongs below; 0: before the first.
    struct Below
    {
        int row;
        Line line;
    };

    /// Puts lines below rows of the list as it is now, in one pass; of several below one row the
    /// first stays the first. Returns their rows, in order.
    std::vector<int> InsertBelow(std::vector<Below> lines);

    /// Takes rows away, in one pass.
    void Remove(std::vector<int> rows);

    /// The row of each line by its id; 0: it is in the list no more.
    std::vector<int> RowsById() const;

    /// Takes another reading of a row's line, of a list that may go afterwards; splits of the line
    /// that are not stored yet take it over. `keepsAnswer`: the answer as it stands stays.
    void Reread(int row, const LineList &readings, const Line &reading, bool keepsAnswer = false);

    /// Takes the errors away that are about the sum of an order's answers.
    void ForgetSumErrors(qint64 accNo);

    /// The rows of an order, from top to bottom.
    std::vector<int> RowsOfOrder(qint64 accNo) const;

    /// The row of a stored line; 0: it is not in the list.
    int RowOf(const LineKey &key) const;

    /// How many lines hold what is not registered: changed ones and new splits.
    int UnregisteredCount() const;

private:
    std::vector<Line> m_lines;
    LineId m_lastId = 0;
    std::vector<std::shared_ptr<const Recordset>> m_rows; ///< that the lines read their texts from
    mutable OrderIndex m_index;
    mutable bool m_isIndexed = false; ///< the index is made when first asked for
};
