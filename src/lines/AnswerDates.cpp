#include "lines/AnswerDates.h"

#include "messages/bMessage.h"
#include "platform/InputBox.h"
#include "util/bDate.h"

bool CheckDateSelection(const LineList &list, const RowSelection &selected)
{
    bool hasOpenRow = false;
    selected.ForEach([&](int row) {
        hasOpenRow = !list.At(row).IsShipped();
        return !hasOpenRow;
    });
    if (hasOpenRow)
        return true;
    if (selected.IsEmpty())
        ShowMessage(Message::NoRowForDate);
    else
        ShowMessage(Message::ExtraTextAlone,
                    "出荷済のものしか、選択されていません\rこのデータの変更は出来ません");
    return false;
}

namespace {

/// Gives every selected open row the date that `dateOf` gives for its line.
template <typename DateOf>
int SetDates(LineEdits &edits, const RowSelection &selected, const ShowStatusText &showStatus,
             DateOf &&dateOf)
{
    int changed = 0;
    LongWork work(showStatus, "回答納期を設定しています…", selected.Count(),
                  LongWork::Pieces::Small, LongWork::Stop::Never);
    const LineEdits::Step step(edits);
    selected.ForEach([&](int row) {
        const Line &line = edits.List().At(row);
        const QString before = line.Now().date;
        if (!line.IsShipped())
            edits.SetDate(row, dateOf(line));
        changed += line.Now().date != before;
        work.Step();
        return true;
    });
    return changed;
}

} // namespace

int SetAnswerDates(LineEdits &edits, const RowSelection &selected, const QString &storedDate,
                   const ShowStatusText &showStatus)
{
    return SetDates(edits, selected, showStatus, [&](const Line &) { return storedDate; });
}

int SetSpecifiedDates(LineEdits &edits, const RowSelection &selected,
                      const ShowStatusText &showStatus)
{
    return SetDates(edits, selected, showStatus,
                    [](const Line &line) { return line.SpecifiedDate(); });
}

QString AskAnswerDate()
{
    const QString typed = InputBox("回答納期を入力してください\r"
                                   "例 ：1997年5月28日の場合 970528 と6桁の数字で入力する",
                                   "納期設定");
    if (typed.isEmpty())
        return {};
    if (IsTypedDate(typed))
        return AddCentury(typed);
    ShowMessage(Message::WrongDate);
    return {};
}
