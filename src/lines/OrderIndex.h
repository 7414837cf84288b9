#pragma once

#include <QtGlobal>
#include <vector>

/// Which rows of the list belong to an order. Kept as one sorted run of (order, row), so that a row
/// inserted or removed costs a shift of numbers and no new index.
class OrderIndex
{
public:
    void Clear() { m_entries.clear(); }

    /// Takes the orders of all rows, the first of them row 1.
    void Build(const std::vector<qint64> &accNos);

    /// A row of this order comes in at, or goes from, this number; the rows below it move.
    void Insert(qint64 accNo, int row);
    void Remove(qint64 accNo, int row);

    /// The order's rows from top to bottom; none for an unknown order.
    std::vector<int> Rows(qint64 accNo) const;

private:
    struct Entry
    {
        qint64 accNo;
        int row;

        auto operator<=>(const Entry &) const = default;
    };

    void MoveRows(int from, int by);

    std::vector<Entry> m_entries;
};
