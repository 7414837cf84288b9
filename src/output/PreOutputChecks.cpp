#include "output/PreOutputChecks.h"

#include "answerlist/AnswerList.h"
#include "answerlist/Registration.h"
#include "messages/bMessage.h"

#include <unordered_map>
#include <vector>

namespace {

constexpr int AnswersNeedDate = 2; ///< LinKBN

/// A row that takes part, with what the checks ask of it.
struct Participant
{
    int row;
    qint64 accNo;
    int linKBN;
    Decimal quantity;
    Decimal open;
    bool hasDate;
};

std::vector<Participant> FindParticipants(AnswerList &list, const ShowStatusText &showStatus)
{
    LongWork work(showStatus, "回答をチェックしています…", list.RowCount());
    std::vector<Participant> found;
    found.reserve(size_t(list.RowCount()));
    for (int row = 1; row <= list.RowCount(); ++row) {
        work.Step();
        const ListRow line = list.Row(row);
        if (DecideRow(line, list.IsSelected(row)) == RowKind::NotWritten)
            continue;
        if (!line.View(ListColumn::Error).isEmpty())
            list.SetCell(row, ListColumn::Error, {});
        found.push_back({row, line.AccNo(), line.LinKBN(), line.AnsweredQuantity(),
                         line.OpenQuantity(), !line.AnsweredDate().isEmpty()});
    }
    return found;
}

QString LineError(const Participant &line)
{
    if (line.quantity.IsZero())
        return "回答数量が、0です";
    if (line.linKBN == AnswersNeedDate && !line.hasDate)
        return "回答納期が入力されていません";
    return {};
}

QString SumError(const Participant &line, const Decimal &sum)
{
    constexpr int Decimals = 3;
    if (sum.IsZero())
        return "回答数量合計が、0です";
    if (sum.Rounded(Decimals) > line.open.Rounded(Decimals))
        return "回答数量合計が、注残数を超えています";
    return {};
}

/// Runs the check on every row; the first error is written to its row.
template <typename Check>
bool CheckRows(AnswerList &list, const std::vector<Participant> &lines, Check &&check)
{
    for (const Participant &line : lines) {
        const QString error = check(line);
        if (error.isEmpty())
            continue;
        list.SetCell(line.row, ListColumn::Error, error);
        list.Activate(line.row);
        return false;
    }
    return true;
}

} // namespace

bool RunPreOutputChecks(AnswerList &list, const ShowStatusText &showStatus, int &participants)
{
    const std::vector<Participant> lines = FindParticipants(list, showStatus);
    participants = int(lines.size());
    if (lines.empty()) {
        ShowMessage(Message::NoValidRow, "※ 出荷済のものは、納期回答作成対象にはなりません");
        return false;
    }
    showStatus("回答数が 0でないかチェックしています…");
    if (!CheckRows(list, lines, LineError))
        return false;

    showStatus("回答数合計が、注残数を超えているかチェックしています…");
    std::unordered_map<qint64, Decimal> sums;
    sums.reserve(lines.size());
    for (const Participant &line : lines)
        sums[line.accNo] += line.quantity;
    if (!CheckRows(list, lines,
                   [&](const Participant &line) { return SumError(line, sums[line.accNo]); }))
        return false;

    // The folders themselves were checked at start-up, and are again when a record is written.
    showStatus("納期回答出力パスの正当性をチェックしています…");
    showStatus({});
    return true;
}
