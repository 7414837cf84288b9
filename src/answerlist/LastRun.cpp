#include "answerlist/LastRun.h"

#include <unordered_set>

void LastRun::Note(const LineList &list, const RowSelection &before, const RowSelection &after)
{
    std::unordered_set<qint64> orders;
    before.ForEach([&](int row) {
        if (!after.Contains(row))
            orders.insert(list.At(row).Key().accNo);
        return true;
    });
    if (orders.empty())
        return;
    m_lines.clear();
    for (int row = 1; row <= list.Count(); ++row) {
        // A line that an earlier run has answered may have got an answer since that is none.
        const Line &line = list.At(row);
        if (orders.contains(line.Key().accNo) && line.WasSentHere()
            && !line.IsStoredSinceAnswered())
            m_lines.push_back(line);
    }
}
