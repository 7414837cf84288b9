#include "answerlist/AnswerDates.h"

#include "answerlist/AnswerList.h"
#include "grid/SpreadGrid.h"
#include "messages/bMessage.h"
#include "platform/InputBox.h"
#include "util/VbText.h"
#include "util/bDate.h"

namespace {

/// Runs `visit` for every selected row that is not shipped, until it returns False.
template <typename Visit>
void ForSelectedOpenRows(const AnswerList &list, Visit &&visit)
{
    const auto ranges = list.Grid()->SelectedRowRanges();
    for (const auto &[first, last] : ranges)
        for (int row = first; row <= last; ++row)
            if (!list.Row(row).IsShipped() && !visit(row))
                return;
}

} // namespace

bool CheckDateSelection(const AnswerList &list)
{
    bool hasOpenRow = false;
    ForSelectedOpenRows(list, [&](int) {
        hasOpenRow = true;
        return false;
    });
    if (hasOpenRow)
        return true;
    if (list.SelectedRowCount() == 0)
        ShowMessage(Message::NoRowForDate);
    else
        ShowMessage(Message::ExtraTextAlone,
                    "出荷済のものしか、選択されていません\rこのデータの変更は出来ません");
    return false;
}

namespace {

/// Gives every selected open row the date (shown form) that `dateOf` gives for it.
template <typename DateOf>
void SetDates(AnswerList &list, const ShowStatusText &showStatus, DateOf &&dateOf)
{
    LongWork work(showStatus, "回答納期を設定しています…", list.SelectedRowCount());
    ForSelectedOpenRows(list, [&](int row) {
        list.SetAnswerDate(row, dateOf(row));
        work.Step();
        return true;
    });
}

} // namespace

void SetAnswerDates(AnswerList &list, const QString &storedDate, const ShowStatusText &showStatus)
{
    const QString shown = ShownDate(storedDate);
    SetDates(list, showStatus, [&](int) { return shown; });
}

void SetSpecifiedDates(AnswerList &list, const ShowStatusText &showStatus)
{
    SetDates(list, showStatus, [&](int row) { return list.Row(row).SpecifiedDate(); });
}

void UpdateDifferenceMark(AnswerList &list, int row)
{
    list.SetAnswerDate(row, list.Row(row).Cell(ListColumn::AnswerDate));
}

QString RowHint(const AnswerList &list, int row)
{
    const QString error = Trim(list.Row(row).Cell(ListColumn::Error));
    if (!error.isEmpty())
        return error;
    return list.IsLocked(row) ? QString("出荷済のものの変更、納期回答作成は出来ません") : QString();
}

QString AskAnswerDate()
{
    const QString typed = InputBox("回答納期を入力してください\r"
                                   "例 ：1997年5月28日の場合 970528 と6桁の数字で入力する",
                                   "納期設定");
    if (typed.isEmpty())
        return {};
    const QString stored = AddCentury(typed);
    if (IsValidDate(stored))
        return stored;
    ShowMessage(Message::WrongDate);
    return {};
}
