#include "lines/RowSelection.h"

#include <algorithm>

RowSelection::RowSelection(std::vector<Range> ranges)
{
    std::sort(ranges.begin(), ranges.end());
    for (const Range &range : ranges) {
        if (m_ranges.empty() || range.first > m_ranges.back().second + 1)
            m_ranges.push_back(range);
        else
            m_ranges.back().second = std::max(m_ranges.back().second, range.second);
    }
}

bool RowSelection::Contains(int row) const
{
    const auto after
        = std::upper_bound(m_ranges.begin(), m_ranges.end(), row,
                           [](int value, const Range &range) { return value < range.first; });
    return after != m_ranges.begin() && row <= std::prev(after)->second;
}

int RowSelection::Count() const
{
    int count = 0;
    for (const auto &[first, last] : m_ranges)
        count += last - first + 1;
    return count;
}

RowSelection RowSelection::Without(std::vector<int> rows) const
{
    std::sort(rows.begin(), rows.end());
    std::vector<Range> left;
    auto gone = rows.begin();
    for (const auto &[first, last] : m_ranges) {
        int start = first;
        gone = std::lower_bound(gone, rows.end(), first);
        for (; gone != rows.end() && *gone <= last; ++gone) {
            if (*gone > start)
                left.emplace_back(start, *gone - 1);
            start = *gone + 1;
        }
        if (start <= last)
            left.emplace_back(start, last);
    }
    return RowSelection(std::move(left));
}
