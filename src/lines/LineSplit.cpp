#include "lines/LineSplit.h"

#include "data/bDAO.h"
#include "lines/ListLoading.h"
#include "messages/bMessage.h"
#include "platform/Log.h"
#include "platform/MsgBox.h"

bool CheckSingleRow(const RowSelection &selected)
{
    if (selected.Count() <= 1)
        return true;
    ShowMessage(Message::ExtraTextAlone, "複数行の指定は出来ません");
    return false;
}

int SingleRow(const RowSelection &selected)
{
    if (selected.IsEmpty()) {
        ShowMessage(Message::NoValidRow);
        return 0;
    }
    return CheckSingleRow(selected) ? selected.First() : 0;
}

Decimal RemainderOf(const LineList &list, int row)
{
    const Line &source = list.At(row);
    Decimal remainder = source.Instructed();
    for (const int other : list.RowsOfOrder(source.Key().accNo))
        if (list.At(other).Key().accSubNo == source.Key().accSubNo)
            remainder = remainder - list.At(other).Now().quantity;
    return remainder;
}

void CopyLine(LineEdits &edits, int row)
{
    const LineList &list = edits.List();
    edits.InsertSplits({{row, list.At(row).Split(RemainderOf(list, row))}});
}

namespace {

/// Why the line is no split that could be taken back; empty when it is one.
QString DeleteRefusal(const Line &line)
{
    if (!line.Instructed().IsZero())
        return "このデータは 分納データではありません";
    if (line.IsShipped())
        return "このデータは 出荷済です";
    if (line.IsAnswered())
        return "このデータは 納期回答済です";
    return {};
}

/// Deletes the line when it may still be and others of its sub-line stay open. Why not is told when
/// nothing is locked any more.
bool DeleteStoredLine(bDAO &db, const Line &line)
{
    const LineKey &key = line.Key();
    const QString subLine = "WHERE ACCNO = " + QString::number(key.accNo) + " AND "
                            + "AccSubNo = " + QString::number(key.accSubNo);
    if (!db.BeginTrans())
        return false;
    const auto openLines = db.OpenRS("Select * From TLSP0010 " + subLine + " AND "
                                     + "ShpSts = 1 AND " + "DpoFlg = 0 ");
    LineList stored; // somebody else may have worked on the line since the list was loaded
    const bool isRead = openLines && ReadOrders(db, {key.accNo}, stored);
    const int row = isRead ? stored.RowOf(key) : 0;
    const bool isGone = isRead && row == 0;
    const bool isLast = isRead && openLines->RecordCount() <= 1;
    QString refusal = row > 0 ? DeleteRefusal(stored.At(row)) : QString();
    if (refusal.isEmpty() && row > 0 && line.IsOtherThan(stored.At(row)))
        refusal = "このデータは ほかの人が変更しています";
    const bool isDeleted = row > 0 && !isLast && refusal.isEmpty()
                           && db.DBExecute("DELETE FROM TLSP0010 " + subLine + " AND "
                                           + "ShpSubNo = " + QString::number(key.shpSubNo) + ";")
                           && db.CommitTrans();
    if (isDeleted) {
        qCInfo(LogAnswer).noquote() << "分納を削除 " + key.ToText();
        return true;
    }
    db.Rollback();
    if (isGone)
        ShowMessage(Message::NoData);
    else if (!refusal.isEmpty())
        ShowMessage(Message::NotDeleted, refusal);
    else if (isLast)
        MsgBox("このデータは 分納データではありません\rまたは、これ以上 削除できません",
               BoxStyle::Exclamation, "注意");
    return false;
}

} // namespace

bool DeleteLine(bDAO &db, const Line &line)
{
    const QString refusal = DeleteRefusal(line);
    if (!refusal.isEmpty()) {
        ShowMessage(Message::NotDeleted, refusal);
        return false;
    }
    return ShowMessage(Message::MayDelete) == BoxButton::Yes
           && (!line.IsStored() || DeleteStoredLine(db, line));
}
