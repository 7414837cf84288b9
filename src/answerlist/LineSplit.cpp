#include "answerlist/LineSplit.h"

#include "answerlist/AnswerList.h"
#include "data/bDAO.h"
#include "messages/bMessage.h"
#include "platform/MsgBox.h"

#include <algorithm>

bool CheckSingleRow(const AnswerList &list)
{
    if (list.SelectedRowCount() <= 1)
        return true;
    ShowMessage(Message::ExtraTextAlone, "複数行の指定は出来ません");
    return false;
}

int SingleRow(const AnswerList &list)
{
    if (list.RowCount() == 0 || list.SelectedRowCount() == 0) {
        ShowMessage(Message::NoValidRow);
        return 0;
    }
    return CheckSingleRow(list) ? list.ActiveRow() : 0;
}

Decimal RemainderOf(const AnswerList &list, int row)
{
    const ListRow source = list.Row(row);
    Decimal remainder = source.InstructedQuantity();
    for (const int other : list.RowsOfOrder(source.AccNo())) {
        const ListRow line = list.Row(other);
        if (line.AccSubNo() == source.AccSubNo())
            remainder = remainder - line.AnsweredQuantity();
    }
    return remainder;
}

void CopyLine(AnswerList &list, int row)
{
    list.InsertBelow(row, SplitRowText(list.Row(row), RemainderOf(list, row)));
}

namespace {

/// Why the row is no split line that could be taken back; empty when it is one.
QString DeleteRefusal(const ListRow &line)
{
    if (!line.InstructedQuantity().IsZero())
        return "このデータは 分納データではありません";
    if (line.IsShipped())
        return "このデータは 出荷済です";
    if (line.IsAnswered())
        return "このデータは 納期回答済です";
    return {};
}

bool DeleteStoredLine(bDAO &db, const ListRow &line)
{
    const QString subLine = "WHERE ACCNO = " + QString::number(line.AccNo()) + " AND "
                            + "AccSubNo = " + QString::number(line.AccSubNo());
    const auto openLines = db.OpenRS("Select * From TLSP0010 " + subLine + " AND "
                                     + "ShpSts = 1 AND " + "DpoFlg = 0 ");
    if (!openLines)
        return false;
    if (db.GetRecordCount(openLines.get()) <= 1) {
        MsgBox("このデータは 分納データではありません\rまたは、これ以上 削除できません",
               BoxStyle::Exclamation, "注意");
        return false;
    }
    return db.DBExecute("DELETE FROM TLSP0010 " + subLine + " AND "
                        + "ShpSubNo = " + QString::number(line.ShpSubNo()) + ";");
}

} // namespace

bool DeleteLine(bDAO &db, AnswerList &list, int row)
{
    const ListRow line = list.Row(row);
    const QString refusal = DeleteRefusal(line);
    if (!refusal.isEmpty()) {
        ShowMessage(Message::NotDeleted, refusal);
        return false;
    }
    if (ShowMessage(Message::MayDelete) != BoxButton::Yes)
        return false;
    if (line.IsStored() && !DeleteStoredLine(db, line))
        return false;
    list.Remove(row);
    if (list.RowCount() > 0)
        list.Activate(std::min(row, list.RowCount()));
    return true;
}
