#include "lines/Registration.h"

#include "data/bDAO.h"
#include "lines/ListLoading.h"
#include "messages/bMessage.h"
#include "platform/Log.h"
#include "util/bDate.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int Shipped = 3;
constexpr int AnswerOutput = 3;

/// Moves to the line of this shipment sub-number; to the end when it is not among the rows.
void MoveToLine(bDAO &db, Recordset &rows, int shpSubNo)
{
    while (!db.IsEOF(&rows) && db.NullToZero(rows, u"ShpSubNo") != shpSubNo)
        db.MoveNext(rows);
}

} // namespace

RowKind DecideRow(const Line &line, bool isSelected)
{
    if (line.IsShipped())
        return RowKind::NotWritten;
    if (!line.IsStored())
        return RowKind::NewLine;
    if (line.IsChanged())
        return RowKind::Changed;
    return isSelected ? RowKind::Selected : RowKind::NotWritten;
}

Registration::Registration(bDAO &db, LineList &list, const RowSelection &selected,
                           IsAsAgreed isAsAgreed)
    : m_db(db)
    , m_list(list)
    , m_selected(selected)
    , m_stamp(WriteStamp::Now())
    , m_isAsAgreed(std::move(isAsAgreed))
{
}

RowKind Registration::Decide(int row) const
{
    return DecideRow(m_list.At(row), m_selected.Contains(row));
}

bool Registration::RegisterAnswers(RegistrationCounts &counts, const ShowStatusText &showStatus)
{
    LongWork work(showStatus, RegistrationText, m_list.Count(), LongWork::Pieces::Long);
    for (int row = 1; row <= m_list.Count(); ++row) {
        m_isStopped = !work.Step();
        if (m_isStopped)
            return true;
        const std::vector<int> rows = m_list.RowsOfOrder(m_list.At(row).Key().accNo);
        const bool isDue = rows.front() == row && std::ranges::any_of(rows, [&](int of) {
                               return Decide(of) != RowKind::NotWritten;
                           });
        if (isDue && !RegisterOrder(rows, counts))
            return false;
    }
    return true;
}

bool Registration::RegisterOrder(const std::vector<int> &rows, RegistrationCounts &counts)
{
    m_written.clear();
    m_failingRow = 0;
    Result result = Result::DatabaseError;
    if (m_db.BeginTrans()) {
        result = WriteOrder(rows);
        if (result == Result::Written && !m_db.CommitTrans())
            result = Result::DatabaseError;
        if (result != Result::Written)
            m_db.Rollback();
    }
    if (result == Result::ChangedElsewhere) {
        m_leftOut.Add(m_db, m_list, m_list.At(rows.front()).Key().accNo);
        return true;
    }
    if (result != Result::Written)
        return Fail(result, m_list.At(m_failingRow > 0 ? m_failingRow : rows.front()).OrderNo());
    for (const WrittenRow &written : m_written) {
        counts.added += written.kind == RowKind::NewLine;
        counts.changed += written.kind == RowKind::Changed;
        m_list.At(written.row).Registered(written.shpSubNo);
    }
    qCInfo(LogAnswer).noquote() << QString("登録 注文№ %1（AccNo %2） %3 明細")
                                       .arg(m_list.At(rows.front()).OrderNo())
                                       .arg(m_list.At(rows.front()).Key().accNo)
                                       .arg(m_written.size());
    return true;
}

/// What the operator reads below message 15, where nothing else has told him why.
QString Registration::ReasonFor(Result result)
{
    switch (result) {
    case Result::NoNumberLeft:
        return "\r分納の番号がこれ以上ありません";
    case Result::NotANumber:
        return "\r元の明細の数値の項目に、数値でない値があります";
    default:
        return {};
    }
}

bool Registration::Fail(Result result, const QString &orderNo)
{
    if (m_failingRow > 0)
        m_list.At(m_failingRow).RegistrationFailed();
    if (result == Result::LineMissing)
        ShowMessage(Message::NoData);
    ShowMessage(Message::NotRegistered, "注文№ " + orderNo + ReasonFor(result));
    return false;
}

Registration::Result Registration::WriteOrder(const std::vector<int> &rows)
{
    if (m_isAsAgreed) {
        const qint64 accNo = m_list.At(rows.front()).Key().accNo;
        LineList stored;
        if (!ReadOrders(m_db, {accNo}, stored))
            return Result::DatabaseError;
        if (!m_isAsAgreed(accNo, stored))
            return Result::ChangedElsewhere;
    }
    for (const int row : rows) {
        const RowKind kind = Decide(row);
        if (kind == RowKind::NotWritten)
            continue;
        m_failingRow = row;
        const Result result = WriteRow(row, kind);
        if (result != Result::Written)
            return result;
    }
    return Result::Written;
}

Registration::Result Registration::WriteRow(int row, RowKind kind)
{
    const Line &line = m_list.At(row);
    int shpSubNo = line.Key().shpSubNo;
    const Result result
        = kind == RowKind::NewLine ? InsertLine(line, shpSubNo) : WriteStoredLine(line);
    if (result == Result::Written)
        m_written.push_back({row, kind, shpSubNo});
    return result;
}

/// What the line's answer writes; its own ship and arrival date stay where it has been shipped or
/// the answer has no date. `stored` is the row in the database that it goes to or comes from.
std::optional<WrittenAnswer> Registration::AnswerFor(const Recordset &stored, const Line &line,
                                                     bool isShipped)
{
    const QString &date = line.Now().date;
    const auto shipDate = ShipDate(m_db, date, m_db.NullToRTrim(stored, u"CustCD"),
                                   m_db.NullToRTrim(stored, u"PayDstCD"));
    if (!shipDate)
        return std::nullopt;
    const bool isKept = isShipped || shipDate->isEmpty();
    WrittenAnswer answer;
    answer.answeredDate = date;
    answer.shipDate = isKept ? m_db.NullToRTrim(stored, u"ShpDate") : *shipDate;
    answer.arrivalDate = isKept ? m_db.NullToRTrim(stored, u"ArvExpDate") : date;
    answer.quantity = line.Now().quantity;
    // By the date that the row has now: what the order says may have changed.
    const QString specified = m_db.NullToRTrim(stored, u"LimDate");
    answer.mark = ShownDate(date) == ShownDate(specified) ? "1" : "2";
    return answer;
}

Registration::Result Registration::WriteStoredLine(const Line &line)
{
    const auto stored = m_db.OpenRS(BuildLineSql(line.Key()));
    if (!stored)
        return Result::DatabaseError;
    if (m_db.IsEOF(stored.get()))
        return Result::LineMissing;
    if (m_db.FieldsOf(*stored, {"CustCD", "PayDstCD", "LimDate", "ShpSts", "ShpDate", "ArvExpDate",
                                "AnsLimDate", "AnsVal", "AnsLimUmu"})
            .empty())
        return Result::DatabaseError;
    const Answer now{m_db.NullToRTrim(*stored, u"AnsLimDate"),
                     Decimal::FromDouble(m_db.NullToZero(*stored, u"AnsVal"))};
    const bool isAnswered = m_db.NullToZero(*stored, u"AnsLimUmu") == AnswerOutput;
    if (now != line.Stored() || isAnswered != line.IsAnswered())
        return Result::ChangedElsewhere;
    const auto answer = AnswerFor(*stored, line, m_db.NullToZero(*stored, u"ShpSts") == Shipped);
    return answer && m_db.DBExecute(BuildUpdateSql(line.Key(), *answer, m_stamp))
               ? Result::Written
               : Result::DatabaseError;
}

Registration::Result Registration::InsertLine(const Line &line, int &shpSubNo)
{
    const LineKey key = line.Source();
    const QString accNo = QString::number(key.accNo);
    const auto source = m_db.OpenRS(QString("SELECT * FROM TLSP0010 WHERE ") + "ACCNO = " + accNo
                                    + " AND " + "ACCSUBNO = " + QString::number(key.accSubNo)
                                    + " AND " + "DPOFLG = 0 " + ";");
    const auto highest = m_db.OpenRS(
        "SELECT MAX(ShpSubNo) AS MaxShpSubNo FROM TLSP0010 WHERE ACCNO = " + accNo + ";");
    const auto payKeys
        = m_db.OpenRS("SELECT PayKeyNo, PayKeySubNp FROM TLSP0010 WHERE ACCNO = " + accNo + ";");
    if (!source || !highest || !payKeys
        || m_db.FieldsOf(*source,
                         {"CustCD", "PayDstCD", "LimDate", "PayKeyNo", "PayKeySubNp", "ShpSubNo"})
               .empty())
        return Result::DatabaseError;
    MoveToLine(m_db, *source, key.shpSubNo);
    if (m_db.IsEOF(source.get()))
        return Result::LineMissing;

    std::vector<QString> keysOfOrder;
    double highestPayKeySubNp = 0;
    for (; !m_db.IsEOF(payKeys.get()); m_db.MoveNext(*payKeys)) {
        keysOfOrder.push_back(payKeys->Text(0));
        highestPayKeySubNp = std::max(highestPayKeySubNp, payKeys->Number(1));
    }
    constexpr double HighestNumber = std::numeric_limits<int>::max();
    const double highestShpSubNo = m_db.NullToZero(*highest, u"MaxShpSubNo");
    if (highestShpSubNo >= HighestNumber || highestPayKeySubNp >= HighestNumber)
        return Result::NoNumberLeft;
    shpSubNo = int(highestShpSubNo) + 1;
    const SplitKey splitKey{shpSubNo,
                            NextPayKey(m_db.NullToRTrim(*source, u"PayKeyNo"),
                                       int(m_db.NullToZero(*source, u"PayKeySubNp")), keysOfOrder),
                            int(highestPayKeySubNp) + 1};
    const auto answer = AnswerFor(*source, line, false);
    if (!answer)
        return Result::DatabaseError;
    const auto insert = BuildInsertSql(*source, splitKey, *answer, m_stamp);
    if (!insert)
        return Result::NotANumber;
    return m_db.DBExecute(*insert) ? Result::Written : Result::DatabaseError;
}
