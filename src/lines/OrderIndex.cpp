#include "lines/OrderIndex.h"

#include <algorithm>

void OrderIndex::Build(const std::vector<qint64> &accNos)
{
    m_entries.clear();
    m_entries.reserve(accNos.size());
    int row = 0;
    for (const qint64 accNo : accNos)
        m_entries.push_back({accNo, ++row});
    std::sort(m_entries.begin(), m_entries.end());
}

void OrderIndex::MoveRows(int from, int by)
{
    // Rows lie in no order here: a branch would be guessed wrong at every second one.
    for (Entry &entry : m_entries)
        entry.row += entry.row >= from ? by : 0;
}

void OrderIndex::Insert(qint64 accNo, int row)
{
    MoveRows(row, 1);
    const Entry entry{accNo, row};
    m_entries.insert(std::lower_bound(m_entries.begin(), m_entries.end(), entry), entry);
}

void OrderIndex::Remove(qint64 accNo, int row)
{
    const Entry entry{accNo, row};
    const auto found = std::lower_bound(m_entries.begin(), m_entries.end(), entry);
    if (found != m_entries.end() && *found == entry)
        m_entries.erase(found);
    MoveRows(row + 1, -1);
}

std::vector<int> OrderIndex::Rows(qint64 accNo) const
{
    std::vector<int> rows;
    for (auto at = std::lower_bound(m_entries.begin(), m_entries.end(), Entry{accNo, 0});
         at != m_entries.end() && at->accNo == accNo; ++at)
        rows.push_back(at->row);
    return rows;
}
