#include "output/Surprises.h"

#include "data/bDAO.h"
#include "lines/ListLoading.h"
#include "lines/Registration.h"
#include "messages/bMessage.h"
#include "platform/Clock.h"
#include "platform/MsgBox.h"
#include "util/bDate.h"

#include <algorithm>
#include <unordered_set>

namespace {

constexpr auto ReadingText = "注文の今の内容を確認しています…";
constexpr size_t OrdersPerStatement = 1'000;

} // namespace

void Surprises::Finding::Add(const QString &orderNo, int more)
{
    constexpr int MostNamed = 5;
    count += more;
    if (orders.contains(orderNo))
        return;
    hasMoreOrders = orders.size() == MostNamed;
    if (!hasMoreOrders)
        orders += orderNo;
}

Surprises::Surprises(bDAO &db, LineList &list, const RowSelection &selected)
    : m_db(db)
    , m_list(list)
    , m_selected(selected)
{
}

bool Surprises::TakesPart(int row) const
{
    return DecideRow(m_list.At(row), m_selected.Contains(row)) != RowKind::NotWritten;
}

/// Whether the list's answer is to be stored over another one: where it has been changed here, and
/// the line can still be answered.
bool Surprises::KeepsAnswer(int row, const Line &reading) const
{
    return m_list.At(row).IsChanged() && reading.MayBeAnswered();
}

bool Surprises::Confirm(const ShowStatusText &showStatus)
{
    LookAtSelection();
    if (!Read(showStatus))
        return false;
    const bool isSurprising
        = std::ranges::any_of(m_findings, [](const Finding &found) { return found.count > 0; });
    if (isSurprising
        && MsgBox(Question(), BoxStyle::Exclamation + BoxStyle::YesNo + BoxStyle::DefaultButton2,
                  "確認")
               != BoxButton::Yes)
        return false;
    TakeReadings();
    return true;
}

void Surprises::LookAtSelection()
{
    for (int row = 1; row <= m_list.Count(); ++row)
        if (m_selected.Contains(row) && TakesPart(row))
            m_answered.insert(m_list.At(row).Key().accNo);
    for (int row = 1; row <= m_list.Count(); ++row) {
        // A split is part of its order's answer without being selected.
        const Line &line = m_list.At(row);
        const bool isExpected = !line.IsStored() && m_answered.contains(line.Key().accNo);
        if (!m_selected.Contains(row) && TakesPart(row) && !isExpected)
            m_findings[Unselected].Add(line.OrderNo());
    }
}

bool Surprises::Read(const ShowStatusText &showStatus)
{
    std::vector<qint64> orders; // as the list comes to them
    std::unordered_set<qint64> known;
    for (int row = 1; row <= m_list.Count(); ++row)
        if (const qint64 accNo = m_list.At(row).Key().accNo;
            TakesPart(row) && known.insert(accNo).second)
            orders.push_back(accNo);

    LongWork work(showStatus, ReadingText, qint64(orders.size()));
    for (size_t from = 0; from < orders.size(); from += OrdersPerStatement) {
        const size_t to = std::min(from + OrdersPerStatement, orders.size());
        LineList &reading = m_readings.emplace_back();
        if (!ReadOrders(m_db, {orders.begin() + qsizetype(from), orders.begin() + qsizetype(to)},
                        reading)) {
            ShowMessage(Message::NotCreated);
            return false;
        }
        const size_t changedBefore = m_changed.size();
        for (size_t at = from; at < to; ++at) {
            LookAt(orders[at], reading);
            if (!work.Step())
                return false;
        }
        if (m_changed.size() == changedBefore)
            m_readings.pop_back();
    }
    return true;
}

void Surprises::LookAt(qint64 accNo, LineList &reading)
{
    for (const int row : m_list.RowsOfOrder(accNo)) {
        const Line &line = m_list.At(row);
        const int read = line.IsStored() ? reading.RowOf(line.Key()) : 0;
        if (!line.IsStored() || (read > 0 && !line.IsOtherThan(reading.At(read))))
            continue;
        m_findings[ChangedElsewhere].Add(line.OrderNo());
        if (read > 0)
            m_changed.push_back({row, &reading.At(read), &reading});
    }
    for (const int at : reading.RowsOfOrder(accNo))
        if (const Line &read = reading.At(at); m_list.RowOf(read.Key()) == 0)
            m_unseen[read.Key()] = read.Stored();
    if (m_answered.contains(accNo))
        LookAtRecord(accNo, reading);
}

std::vector<Surprises::Outgoing> Surprises::OutgoingOf(qint64 accNo, const LineList &reading) const
{
    std::vector<Outgoing> outgoing;
    const auto add = [&](const Line &read, const Answer &answer, bool isSentAlready) {
        if (read.MayBeAnswered() && read.IsAnswerable(answer))
            outgoing.push_back({&read, answer, isSentAlready});
    };
    for (const int at : reading.RowsOfOrder(accNo)) {
        const Line &read = reading.At(at);
        const int row = m_list.RowOf(read.Key());
        if (row == 0) {
            add(read, read.Stored(), read.IsAnswered());
            continue;
        }
        const Line &line = m_list.At(row);
        const Answer &answer = KeepsAnswer(row, read) ? line.Now()
                               : TakesPart(row)       ? read.Now()
                                                      : read.Stored();
        const bool wasSent = read.IsAnswered() || line.WasSentHere();
        add(read, answer, wasSent && answer == read.Stored() && !line.IsStoredSinceAnswered());
    }
    for (const int row : m_list.RowsOfOrder(accNo))
        if (const Line &line = m_list.At(row); !line.IsStored())
            add(line, line.Now(), false);
    return outgoing;
}

void Surprises::LookAtRecord(qint64 accNo, const LineList &reading)
{
    const std::vector<Outgoing> outgoing = OutgoingOf(accNo, reading);
    if (outgoing.empty())
        return;
    const QString today = Now().toString("yyyyMMdd");
    const QString orderNo = outgoing.front().line->OrderNo();
    Decimal sum;
    bool isUnchanged = true;
    for (const Outgoing &out : outgoing) {
        sum += out.answer.quantity;
        // A line on its way is never marked; the others of its order tell.
        isUnchanged &= out.isSentAlready || !out.line->MayBeMarked();
        if (IsValidDate(out.answer.date) && out.answer.date < today)
            m_findings[Past].Add(orderNo);
        if (out.line->IsStored() && m_list.RowOf(out.line->Key()) == 0)
            m_findings[Unseen].Add(orderNo);
    }
    const bool isAnySent
        = std::ranges::any_of(outgoing, [](const Outgoing &out) { return out.isSentAlready; });
    if (isUnchanged && isAnySent)
        m_findings[SentAgain].Add(orderNo);
    constexpr int Decimals = 3;
    if (sum.Rounded(Decimals) > outgoing.front().line->OpenQuantity().Rounded(Decimals))
        m_findings[MoreThanOpen].Add(orderNo);
}

QString Surprises::Question() const
{
    static constexpr const char *Names[Kinds] = {
        "変更したが選択していない行（登録します。選択した注文のほかは回答しません）",
        "回答済で、この一覧では変更していない注文（もう一度送ります）",
        "一覧に出ていないが、回答に入る行",
        "一覧を表示した後に、ほかの人が変更した行（鉛筆の付いた行はここの回答を、ほかの行は今の内容"
        "を送ります）",
        "回答数量の合計が、注残数を超える注文",
        "回答納期が過去の行",
    };
    QString text = "このまま納期回答を作成してもよろしいですか\r";
    for (int kind = 0; kind < Kinds; ++kind) {
        const Finding &found = m_findings[kind];
        if (found.count == 0)
            continue;
        text += QString("\r・%1： %2 件\r　 注文№ %3")
                    .arg(QString(Names[kind]))
                    .arg(found.count)
                    .arg(found.orders.join("、"));
        if (found.hasMoreOrders)
            text += " など";
    }
    return text;
}

void Surprises::TakeReadings()
{
    for (const auto &[row, reading, readings] : m_changed)
        m_list.Reread(row, *readings, *reading, KeepsAnswer(row, *reading));
    m_changed.clear();
    m_readings.clear();
}

bool Surprises::IsAsAgreed(qint64 accNo, const LineList &reading) const
{
    for (const int row : m_list.RowsOfOrder(accNo)) {
        const Line &line = m_list.At(row);
        const int read = line.IsStored() ? reading.RowOf(line.Key()) : 0;
        if (line.IsStored() && (read == 0 || line.IsOtherThan(reading.At(read))))
            return false;
    }
    for (int row = 1; row <= reading.Count(); ++row) {
        const Line &read = reading.At(row);
        const bool isSent = read.MayBeAnswered() && read.IsAnswerable(read.Stored());
        if (!isSent || m_list.RowOf(read.Key()) > 0)
            continue;
        const auto agreed = m_unseen.find(read.Key());
        if (agreed == m_unseen.end() || agreed->second != read.Stored())
            return false;
    }
    return true;
}
