#include "lines/ListLoading.h"

#include <algorithm>

LoadedList LoadList(bDAO &db, const SearchConditions &conditions, LineList &list,
                    const ShowStatusText &showStatus)
{
    LoadedList loaded;
    list.Clear();
    LongWork search(showStatus, LoadingText);
    db.SetProgress([&] { return search.Step(); });
    auto rows = db.OpenRS(BuildListSql(conditions));
    db.SetProgress({});
    loaded.isRead = rows != nullptr;
    loaded.isStopped = search.IsStopped();
    if (!rows)
        return loaded;
    LongWork fill(showStatus, LoadingText, rows->RecordCount());
    loaded.isStopped |= !list.Load(std::move(rows), [&] { return fill.Step(); });
    loaded.lineCount = list.Count();
    for (int row = 1; row <= list.Count() && !loaded.hasDefectiveLines; ++row)
        loaded.hasDefectiveLines = list.At(row).IsDefective();
    return loaded;
}

bool ReadOrders(bDAO &db, const std::vector<qint64> &accNos, LineList &lines)
{
    lines.Clear();
    auto rows = db.OpenRS(BuildOrdersSql(accNos));
    return rows && lines.Load(std::move(rows), [] { return true; });
}
