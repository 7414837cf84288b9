#include "output/PreOutputChecks.h"

#include "lines/Registration.h"
#include "messages/bMessage.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace {

/// The rows that take part. What an earlier check found is no more. Nothing when the operator
/// stops.
std::optional<std::vector<int>> FindParticipants(LineList &list, const RowSelection &selected,
                                                 const ShowStatusText &showStatus)
{
    LongWork work(showStatus, "回答をチェックしています…", list.Count());
    std::vector<int> found;
    for (int row = 1; row <= list.Count(); ++row) {
        if (!work.Step())
            return std::nullopt;
        Line &line = list.At(row);
        line.SetError(LineError::None);
        if (DecideRow(line, selected.Contains(row)) != RowKind::NotWritten)
            found.push_back(row);
    }
    return found;
}

LineError OwnError(const Line &line)
{
    if (line.Now().quantity.IsZero())
        return LineError::NoQuantity;
    return line.NeedsDate() && line.Now().date.isEmpty() ? LineError::NoDate : LineError::None;
}

LineError SumError(const Line &line, const Decimal &sum)
{
    constexpr int Decimals = 3;
    if (sum.IsZero())
        return LineError::NoSum;
    return sum.Rounded(Decimals) > line.OpenQuantity().Rounded(Decimals) ? LineError::MoreThanOpen
                                                                         : LineError::None;
}

/// Runs the check on every row; the first error is written to its line, whose row it returns.
template <typename Check>
int FirstFailing(LineList &list, const std::vector<int> &rows, Check &&check)
{
    for (const int row : rows) {
        Line &line = list.At(row);
        line.SetError(check(line));
        if (line.Error() != LineError::None)
            return row;
    }
    return 0;
}

} // namespace

CheckResult RunPreOutputChecks(LineList &list, const RowSelection &selected,
                               const ShowStatusText &showStatus)
{
    CheckResult result;
    const auto found = FindParticipants(list, selected, showStatus);
    if (!found)
        return result;
    const std::vector<int> &rows = *found;
    result.participants = int(rows.size());
    if (rows.empty()) {
        ShowMessage(Message::NoValidRow, "※ 出荷済のものは、納期回答作成対象にはなりません");
        return result;
    }
    showStatus("回答数が 0でないかチェックしています…");
    result.failedRow = FirstFailing(list, rows, OwnError);
    if (result.failedRow > 0)
        return result;

    showStatus("回答数合計が、注残数を超えているかチェックしています…");
    std::unordered_map<qint64, Decimal> sums;
    sums.reserve(rows.size());
    for (const int row : rows)
        sums[list.At(row).Key().accNo] += list.At(row).Now().quantity;
    result.failedRow = FirstFailing(
        list, rows, [&](const Line &line) { return SumError(line, sums[line.Key().accNo]); });
    if (result.failedRow > 0)
        return result;

    // The folders themselves were checked at start-up, and are again when a record is written.
    showStatus("納期回答出力パスの正当性をチェックしています…");
    showStatus({});
    result.isPassed = true;
    return result;
}
