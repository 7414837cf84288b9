#include "lines/Line.h"

#include "util/VbText.h"
#include "util/bDate.h"

#include <algorithm>

namespace {

constexpr int Unshipped = 1; ///< ShpSts
constexpr int Shipped = 3;
constexpr int AnswerOutput = 3;     ///< AnsLimUmu
constexpr int DefectiveGoods = 15;  ///< DenKBN
constexpr int AnswersEveryLine = 1; ///< LinKBN
constexpr int AnswersNeedDate = 2;

} // namespace

QString ErrorText(LineError error)
{
    switch (error) {
    case LineError::NoQuantity:
        return "回答数量が、0です";
    case LineError::NoDate:
        return "回答納期が入力されていません";
    case LineError::NoSum:
        return "回答数量合計が、0です";
    case LineError::MoreThanOpen:
        return "回答数量合計が、注残数を超えています";
    case LineError::None:
        break;
    }
    return {};
}

Line::Line(const Recordset &rows, int row, QSet<QString> &dates)
    : m_record(rows.At(row))
{
    const auto whole = [&](LineField field) { return rows.Whole(int(field)); };
    m_key = {whole(LineField::AccNo), int(whole(LineField::AccSubNo)),
             int(whole(LineField::ShpSubNo))};
    m_stored.quantity = Decimal::FromDouble(rows.Number(int(LineField::AnsVal)));
    if (const QString date = RTrim(rows.Text(int(LineField::AnsLimDate))); !date.isEmpty())
        m_stored.date = *dates.insert(date);
    m_shpSts = qint16(whole(LineField::ShpSts));
    m_state = whole(LineField::AnsLimUmu) == AnswerOutput ? State::Answered : State::Open;
    m_isProposed = m_shpSts < Shipped && m_stored.quantity.IsZero();
    m_hasDateMark = rows.Text(int(LineField::AnsMark)) == "2";
    m_now = Unchanged();
}

Line Line::Split(const Decimal &quantity) const
{
    Line split = *this;
    split.m_sourceShpSubNo = m_isStored ? m_key.shpSubNo : m_sourceShpSubNo;
    split.m_id = 0;
    split.m_key.shpSubNo = 0;
    split.m_stored = {};
    split.m_now = {QString(), quantity.IsNegative() ? Decimal() : quantity};
    split.m_shpSts = Unshipped;
    split.m_state = State::Open;
    split.m_error = LineError::None;
    split.m_isStored = false;
    split.m_isSplit = true;
    split.m_isProposed = false;
    split.m_hasDateMark = false;
    split.m_hasFailed = false;
    split.m_isStoredSinceAnswered = false;
    split.m_wasSentHere = false;
    split.m_isRegisteredHere = false;
    split.m_revision = 0;
    return split;
}

LineKey Line::Source() const
{
    return {m_key.accNo, m_key.accSubNo, m_sourceShpSubNo};
}

QString Line::Text(LineField field) const
{
    return RTrim(m_record.Text(int(field)));
}

int Line::Whole(LineField field) const
{
    return int(m_record.Whole(int(field)));
}

Decimal Line::Quantity(LineField field) const
{
    if (m_isSplit && (field == LineField::IndVal || field == LineField::ShpVal))
        return {};
    return Decimal::FromDouble(m_record.Number(int(field)));
}

bool Line::IsDefective() const
{
    return Whole(LineField::DenKBN) == DefectiveGoods;
}

bool Line::NeedsDate() const
{
    return LinKBN() == AnswersNeedDate;
}

std::optional<QString> Line::OutputPath() const
{
    if (Whole(LineField::NokiInfKBN) != 1)
        return std::nullopt;
    return Trim(Text(LineField::NokiInfPath));
}

bool Line::IsShipped() const
{
    return m_shpSts == Shipped;
}

bool Line::MayBeAnswered() const
{
    return m_shpSts < Shipped;
}

bool Line::MayBeMarked() const
{
    return m_shpSts == Unshipped;
}

Answer Line::Unchanged() const
{
    return {m_stored.date, m_isProposed ? Instructed() : m_stored.quantity};
}

bool Line::IsChanged() const
{
    return m_hasFailed || m_now != Unchanged();
}

bool Line::IsAnswerable(const Answer &answer) const
{
    if (answer.quantity.IsZero())
        return false;
    return LinKBN() == AnswersEveryLine || (NeedsDate() && !Trimmed(answer.date).isEmpty());
}

bool Line::IsSpecifiedDate(const QString &date) const
{
    return ShownDate(date) == ShownDate(SpecifiedDate());
}

void Line::SetDate(const QString &storedForm)
{
    m_now.date = storedForm;
    m_hasDateMark = !IsSpecifiedDate(storedForm);
    if (m_error == LineError::NoDate)
        m_error = LineError::None;
}

void Line::SetQuantity(const Decimal &quantity)
{
    m_now.quantity = quantity;
    if (m_error != LineError::NoDate)
        m_error = LineError::None;
}

void Line::PutBack(const Answer &answer, bool hasDateMark)
{
    m_now = answer;
    m_hasDateMark = hasDateMark;
    m_hasFailed = m_hasFailed && m_now != Unchanged();
    m_error = LineError::None;
}

void Line::TakeStored(const Answer &answer)
{
    m_isStoredSinceAnswered |= answer != m_stored;
    m_stored = m_now = answer;
    m_isProposed = false;
    m_hasFailed = false;
    m_isRegisteredHere = true;
    ++m_revision;
    m_hasDateMark = !IsSpecifiedDate(answer.date);
    m_error = LineError::None;
}

void Line::Registered(int shpSubNo)
{
    m_key.shpSubNo = shpSubNo;
    m_isStored = true;
    TakeStored(m_now);
}

void Line::RegistrationFailed()
{
    m_hasFailed = true;
}

void Line::Answered()
{
    m_wasSentHere = true;
    m_isStoredSinceAnswered = false;
    if (MayBeMarked())
        m_state = State::AnsweredHere;
}

bool Line::IsOtherThan(const Line &reading) const
{
    return m_stored != reading.m_stored || m_shpSts != reading.m_shpSts
           || IsAnswered() != reading.IsAnswered() || SpecifiedDate() != reading.SpecifiedDate()
           || Instructed() != reading.Instructed();
}

void Line::Reread(const Line &reading)
{
    const Line before = *this;
    *this = reading;
    m_id = before.m_id;
    m_revision = quint16(before.m_revision + 1);
    m_wasSentHere = before.m_wasSentHere;
    m_isRegisteredHere = before.m_isRegisteredHere;
    m_isStoredSinceAnswered = before.m_isStoredSinceAnswered || reading.m_stored != before.m_stored;
}

void Line::KeepAnswerOver(const Line &reading)
{
    const Answer now = m_now;
    Reread(reading);
    m_now = now;
    m_hasDateMark = !IsSpecifiedDate(now.date);
}

void Line::RereadSource(const Line &reading)
{
    m_record = reading.m_record;
    if (!m_now.date.isEmpty())
        m_hasDateMark = !IsSpecifiedDate(m_now.date);
}
