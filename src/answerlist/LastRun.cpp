#include "answerlist/LastRun.h"

#include <algorithm>

void LastRun::Note(const LineList &list, const RowSelection &before, const RowSelection &after)
{
    std::vector<qint64> orders;
    before.ForEach([&](int row) {
        if (!after.Contains(row))
            orders.push_back(list.At(row).Key().accNo);
        return true;
    });
    if (orders.empty())
        return;
    std::ranges::sort(orders);
    orders.erase(std::unique(orders.begin(), orders.end()), orders.end());
    m_orders = std::move(orders);
}

RowSelection LastRun::Rows(const LineList &list) const
{
    std::vector<RowSelection::Range> rows;
    for (const qint64 order : m_orders)
        for (const int row : list.RowsOfOrder(order))
            if (list.At(row).WasSentHere())
                rows.emplace_back(row, row);
    return RowSelection(std::move(rows));
}
