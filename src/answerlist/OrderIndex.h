#pragma once

#include <QtGlobal>
#include <unordered_map>
#include <vector>

/// Which rows of the list belong to an order.
class OrderIndex
{
public:
    void Clear() { m_rows.clear(); }
    void Add(qint64 accNo, int row) { m_rows[accNo].push_back(row); }

    /// The rows in the order they were added; none for an unknown order.
    const std::vector<int> &Rows(qint64 accNo) const
    {
        static const std::vector<int> none;
        const auto found = m_rows.find(accNo);
        return found == m_rows.end() ? none : found->second;
    }

private:
    std::unordered_map<qint64, std::vector<int>> m_rows;
};
