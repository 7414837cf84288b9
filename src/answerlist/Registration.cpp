#include "answerlist/Registration.h"

#include "answerlist/AnswerDates.h"
#include "answerlist/AnswerList.h"
#include "data/bDAO.h"
#include "messages/bMessage.h"
#include "util/VbText.h"
#include "util/bDate.h"

#include <algorithm>

namespace {

constexpr int Shipped = 3;

/// Moves to the row with the lowest shipment sub-number: the line that the others were split from.
void MoveToFirstLine(bDAO &db, Recordset &rows)
{
    const int shpSubNo = rows.FieldIndex(u"ShpSubNo");
    double lowest = rows.Number(shpSubNo);
    for (db.MoveNext(rows); !rows.IsEof(); db.MoveNext(rows))
        lowest = std::min(lowest, rows.Number(shpSubNo));
    db.MoveFirst(rows);
    while (rows.Number(shpSubNo) != lowest)
        db.MoveNext(rows);
}

} // namespace

RowKind DecideRow(const ListRow &line, bool isSelected)
{
    if (line.IsShipped())
        return RowKind::NotWritten;
    if (!line.IsStored())
        return RowKind::NewLine;
    if (line.IsChanged())
        return RowKind::Changed;
    return isSelected ? RowKind::Selected : RowKind::NotWritten;
}

RowKind DecideRow(const AnswerList &list, int row)
{
    return DecideRow(list.Row(row), list.IsSelected(row));
}

Registration::Registration(bDAO &db, AnswerList &list)
    : m_db(db)
    , m_list(list)
    , m_stamp(WriteStamp::Now())
{
}

bool Registration::RegisterAnswers(RegistrationCounts &counts, const ShowStatusText &showStatus)
{
    if (m_list.RowCount() == 0)
        return true;
    qint64 accNo = m_list.Row(1).AccNo();
    int lastWritten = 1;
    if (!m_db.BeginTrans())
        return Fail(m_list.Row(1));
    LongWork work(showStatus, RegistrationText, m_list.RowCount());
    for (int row = 1; row <= m_list.RowCount(); ++row) {
        work.Step();
        const ListRow line = m_list.Row(row);
        if (line.AccNo() != accNo && !m_written.empty()) {
            if (!Commit(counts) || !m_db.BeginTrans())
                return Fail(m_list.Row(lastWritten));
        }
        accNo = line.AccNo();
        const RowKind kind = DecideRow(line, m_list.IsSelected(row));
        if (kind == RowKind::NotWritten)
            continue;
        lastWritten = row;
        if (!WriteRow(row, line, kind)) {
            m_db.Rollback();
            m_list.SetCell(row, ListColumn::ShpSubNo, {});
            m_list.SetCell(row, ListColumn::LoadedDate, {});
            m_list.SetCell(row, ListColumn::LoadedQuantity, "0");
            return Fail(line);
        }
    }
    return Commit(counts) || Fail(m_list.Row(lastWritten));
}

bool Registration::Commit(RegistrationCounts &counts)
{
    if (!m_db.CommitTrans()) {
        m_db.Rollback();
        return false;
    }
    for (const WrittenRow &written : m_written) {
        counts.added += written.kind == RowKind::NewLine;
        counts.changed += written.kind == RowKind::Changed;
        if (written.kind == RowKind::NewLine)
            m_list.SetCell(written.row, ListColumn::ShpSubNo, QString::number(written.shpSubNo));
        m_list.SetCell(written.row, ListColumn::LoadedDate, written.answeredDate);
        m_list.SetCell(written.row, ListColumn::LoadedQuantity, written.quantity);
        UpdateDifferenceMark(m_list, written.row); // it has been stored as well
    }
    m_written.clear();
    return true;
}

bool Registration::Fail(const ListRow &line)
{
    m_written.clear();
    ShowMessage(Message::NotRegistered, "注文№ " + line.OrderNo());
    return false;
}

bool Registration::WriteRow(int row, const ListRow &line, RowKind kind)
{
    LineKey key{line.AccNo(), line.AccSubNo(), line.ShpSubNo()};
    const bool isWritten
        = kind == RowKind::NewLine ? InsertLine(key, line) : WriteStoredLine(key, line);
    if (isWritten)
        m_written.push_back({row, kind, key.shpSubNo, StoredDate(line.AnsweredDate()),
                             line.Cell(ListColumn::AnswerQuantity)});
    return isWritten;
}

/// What the row's answer writes to a line; the line's own ship and arrival date stay where it has
/// been shipped or the answer has no date.
std::optional<LineAnswer> Registration::Answer(const Recordset &stored, const ListRow &line,
                                               bool isShipped)
{
    const auto shipDate = ShipDate(m_db, line.AnsweredDate(), m_db.NullToRTrim(stored, u"CustCD"),
                                   m_db.NullToRTrim(stored, u"PayDstCD"));
    if (!shipDate)
        return std::nullopt;
    const bool isKept = isShipped || shipDate->isEmpty();
    const bool isSpecified = line.AnsweredDate() == line.SpecifiedDate();
    LineAnswer answer;
    answer.answeredDate = StoredDate(line.AnsweredDate());
    answer.shipDate = isKept ? m_db.NullToRTrim(stored, u"ShpDate") : *shipDate;
    answer.arrivalDate = isKept ? m_db.NullToRTrim(stored, u"ArvExpDate") : answer.answeredDate;
    answer.quantity = line.AnsweredQuantity();
    answer.mark = isSpecified ? "1" : "2";
    return answer;
}

bool Registration::WriteStoredLine(const LineKey &key, const ListRow &line)
{
    const auto stored = m_db.OpenRS(BuildLineSql(key));
    if (!stored)
        return false;
    if (m_db.IsEOF(stored.get())) {
        ShowMessage(Message::NoData);
        return false;
    }
    const auto answer = Answer(*stored, line, m_db.NullToZero(*stored, u"ShpSts") == Shipped);
    return answer && m_db.DBExecute(BuildUpdateSql(key, *answer, m_stamp));
}

bool Registration::InsertLine(LineKey &key, const ListRow &line)
{
    const QString accNo = QString::number(key.accNo);
    const auto source = m_db.OpenRS(QString("SELECT * FROM TLSP0010 WHERE ") + "ACCNO = " + accNo
                                    + " AND " + "ACCSUBNO = " + QString::number(key.accSubNo)
                                    + " AND " + "DPOFLG = 0 " + ";");
    const auto highest = m_db.OpenRS(
        "SELECT MAX(ShpSubNo) AS MaxShpSubNo FROM TLSP0010 WHERE ACCNO = " + accNo + ";");
    const auto payKeys = m_db.OpenRS("SELECT PayKeyNo FROM TLSP0010 WHERE ACCNO = " + accNo + ";");
    if (!source || !highest || !payKeys)
        return false;
    if (m_db.IsEOF(source.get())) {
        ShowMessage(Message::NoData);
        return false;
    }
    MoveToFirstLine(m_db, *source);
    std::vector<QString> keysOfOrder;
    for (; !m_db.IsEOF(payKeys.get()); m_db.MoveNext(*payKeys))
        keysOfOrder.push_back(payKeys->Text(0));

    key.shpSubNo = int(m_db.NullToZero(*highest, u"MaxShpSubNo")) + 1;
    const auto answer = Answer(*source, line, false);
    if (!answer)
        return false;
    const QString payKey = NextPayKey(m_db.NullToRTrim(*source, u"PayKeyNo"),
                                      int(m_db.NullToZero(*source, u"PayKeySubNp")), keysOfOrder);
    return m_db.DBExecute(BuildInsertSql(*source, key.shpSubNo, payKey, *answer, m_stamp));
}
