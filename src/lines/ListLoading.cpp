#include "lines/ListLoading.h"

#include "platform/Log.h"

#include <QElapsedTimer>
#include <algorithm>

namespace {

/// The conditions that the operator has set, by the names of their columns.
QString ConditionsText(const SearchConditions &conditions)
{
    const std::pair<const char *, const QString &> texts[] = {
        {"CustCD", conditions.customerCode},  {"CustSecCD", conditions.customerSectionCode},
        {"AccHinCD", conditions.productCode}, {"HinName", conditions.productName},
        {"OdrNo", conditions.orderNo},        {"MfactNo", conditions.makerNo},
        {"PayKeyNo", conditions.payKeyNo},
    };
    QStringList named;
    for (const auto &[name, text] : texts)
        if (!text.trimmed().isEmpty())
            named += QString("%1=%2").arg(name, text.trimmed());
    if (!conditions.fromDate.isEmpty() || !conditions.toDate.isEmpty())
        named += QString("%1=%2～%3")
                     .arg(conditions.dateBasis, conditions.fromDate, conditions.toDate);
    return named.join(' ');
}

void LogLoaded(const LoadedList &loaded, const SearchConditions &conditions, qint64 ms)
{
    const QString what = loaded.isStopped ? "一覧の読み込みを中止"
                         : loaded.isRead  ? "一覧を表示"
                                          : "一覧を読み込めません";
    qCInfo(LogList).noquote() << QString("%1 条件: %2、%3 行、%4 ミリ秒")
                                     .arg(what, OneLine(ConditionsText(conditions)))
                                     .arg(loaded.lineCount)
                                     .arg(ms);
}

/// Fills the list; for the rest see LoadList.
LoadedList FillList(bDAO &db, const SearchConditions &conditions, LineList &list,
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

} // namespace

LoadedList LoadList(bDAO &db, const SearchConditions &conditions, LineList &list,
                    const ShowStatusText &showStatus)
{
    QElapsedTimer timer;
    timer.start();
    const LoadedList loaded = FillList(db, conditions, list, showStatus);
    LogLoaded(loaded, conditions, timer.elapsed());
    return loaded;
}

bool ReadOrders(bDAO &db, const std::vector<qint64> &accNos, LineList &lines)
{
    lines.Clear();
    auto rows = db.OpenRS(BuildOrdersSql(accNos));
    return rows && lines.Load(std::move(rows), [] { return true; });
}
