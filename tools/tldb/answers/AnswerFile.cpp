#include "tldb/answers/AnswerFile.h"

#include "platform/ShiftJis.h"
#include "tldb/answers/AnswerLayout.h"
#include "util/Decimal.h"
#include "util/VbText.h"
#include "util/bDate.h"

#include <algorithm>

namespace {

constexpr auto BlankDate = "000000";
constexpr auto NoDate = "999999";
constexpr QChar Unreadable(QChar::ReplacementCharacter);

/// How a slot looks that no delivery fills.
const QByteArray ClearedSlot
    = QByteArray(6, '0') + QByteArray(8, ' ') + QByteArray(18, '0') + QByteArray(1, ' ');

bool IsDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// The length in bytes of the character that begins with this byte.
int CharacterLength(char byte)
{
    const auto lead = uchar(byte);
    return (lead >= 0x81 && lead <= 0x9f) || (lead >= 0xe0 && lead <= 0xfc) ? 2 : 1;
}

/// Reads the fields of one record and collects its faults.
class FieldReader
{
public:
    FieldReader(QByteArrayView line, DecodedAnswer &answer)
        : m_line(line)
        , m_answer(answer)
    {
    }

    /// The value of a field whose positions count from byte `base` (0 is the record's first).
    AnswerValue Read(const AnswerFieldLayout &field, int base)
    {
        m_start = base + field.start - 1;
        m_bytes = m_line.sliced(m_start, field.length);
        m_name = field.name;
        return {m_name, ReadByKind(field.kind)};
    }

private:
    QString ReadByKind(AnswerFieldKind kind)
    {
        switch (kind) {
        case AnswerFieldKind::Text:
            return ReadText();
        case AnswerFieldKind::Counter:
            CheckDigits();
            return RawText();
        case AnswerFieldKind::Quantity:
            return ReadQuantity();
        case AnswerFieldKind::Date:
            return ReadDate({});
        case AnswerFieldKind::DateOrBlank:
            return ReadDate({BlankDate});
        case AnswerFieldKind::AnsweredDate:
            return ReadDate({BlankDate, NoDate});
        case AnswerFieldKind::InformationKind:
            return ReadOneOf({"0702"});
        case AnswerFieldKind::AnswerKind:
            return ReadOneOf({"1", "2"});
        case AnswerFieldKind::AnswerMark:
            return ReadOneOf({"1", "2", " "});
        }
        return {};
    }

    void AddFault(qsizetype at, const QString &what)
    {
        m_answer.faults.push_back({m_answer.position + m_start + at, m_name + ": " + what});
    }

    QString RawText() const { return RTrim(FromShiftJis(m_bytes)); }

    /// A text is cut at its field's end whatever stands there, so half a character is allowed in
    /// the last byte.
    QString ReadText()
    {
        for (qsizetype at = 0; at < m_bytes.size();) {
            const int length = CharacterLength(m_bytes[at]);
            if (at + length > m_bytes.size())
                break;
            const QByteArrayView character = m_bytes.sliced(at, length);
            if (character == "\r" || FromShiftJis(character).contains(Unreadable)) {
                AddFault(at, "not a character of a text");
                break;
            }
            at += length;
        }
        return RawText();
    }

    bool CheckDigits()
    {
        const auto bad = std::find_if_not(m_bytes.begin(), m_bytes.end(), IsDigit);
        if (bad == m_bytes.end())
            return true;
        AddFault(bad - m_bytes.begin(), "not a digit");
        return false;
    }

    QString ReadQuantity()
    {
        if (!CheckDigits())
            return RawText();
        const QString digits = RawText();
        return Decimal::FromText(digits.left(9) + '.' + digits.mid(9)).ToText();
    }

    QString ReadDate(std::initializer_list<QByteArrayView> others)
    {
        if (!CheckDigits())
            return RawText();
        const bool isOther = std::find(others.begin(), others.end(), m_bytes) != others.end();
        if (isOther)
            return m_bytes == NoDate ? "99999999" : "";
        const QString date = AddCentury(RawText());
        if (!IsValidDate(date))
            AddFault(0, "not a date");
        return date;
    }

    QString ReadOneOf(std::initializer_list<QByteArrayView> allowed)
    {
        if (std::find(allowed.begin(), allowed.end(), m_bytes) == allowed.end())
            AddFault(0, "not an allowed value");
        return RawText();
    }

    QByteArrayView m_line;
    DecodedAnswer &m_answer;
    qsizetype m_start = 0;
    QByteArrayView m_bytes;
    QString m_name;
};

void ReadDeliveries(QByteArrayView line, FieldReader &reader, DecodedAnswer &answer)
{
    for (int slot = 1; slot <= AnswerSlotCount; ++slot) {
        const int base = AnswerSlotsStart - 1 + AnswerSlotLength * (slot - 1);
        if (line.sliced(base, AnswerSlotLength) == ClearedSlot)
            continue;
        AnsweredDelivery delivery{slot, {}};
        for (const AnswerFieldLayout &field : AnswerSlotFields())
            delivery.values.push_back(reader.Read(field, base));
        answer.deliveries.push_back(std::move(delivery));
    }
}

void ReadRecord(QByteArrayView line, DecodedAnswer &answer)
{
    if (line.size() != ShortAnswerLength && line.size() != LongAnswerLength) {
        answer.faults.push_back({answer.position, QString("record of %1 bytes, not %2 or %3")
                                                      .arg(line.size())
                                                      .arg(ShortAnswerLength)
                                                      .arg(LongAnswerLength)});
        return;
    }
    FieldReader reader(line, answer);
    for (const AnswerFieldLayout &field : AnswerFields())
        if (field.start < line.size())
            answer.values.push_back(reader.Read(field, 0));
    ReadDeliveries(line, reader, answer);
    std::stable_sort(
        answer.faults.begin(), answer.faults.end(),
        [](const AnswerFault &a, const AnswerFault &b) { return a.position < b.position; });
}

} // namespace

QString DecodedAnswer::Value(const QString &name) const
{
    for (const AnswerValue &value : values)
        if (value.name == name)
            return value.text;
    return {};
}

std::vector<DecodedAnswer> DecodeAnswers(const QByteArray &bytes)
{
    std::vector<DecodedAnswer> answers;
    for (qsizetype start = 0; start < bytes.size();) {
        // Neither byte of a double-byte character is a line feed.
        const qsizetype lineFeed = bytes.indexOf('\n', start);
        const qsizetype next = lineFeed < 0 ? bytes.size() : lineFeed + 1;
        qsizetype end = lineFeed < 0 ? bytes.size() : lineFeed;
        const bool hasReturn = end > start && bytes[end - 1] == '\r';
        if (hasReturn)
            --end;

        DecodedAnswer answer;
        answer.position = start + 1;
        answer.length = end - start;
        ReadRecord(QByteArrayView(bytes).sliced(start, end - start), answer);
        if (lineFeed < 0 || !hasReturn)
            answer.faults.push_back({end + 1, "no CR LF after the record"});
        answers.push_back(std::move(answer));
        start = next;
    }
    return answers;
}

bool HasFaults(const std::vector<DecodedAnswer> &answers)
{
    return std::any_of(answers.begin(), answers.end(),
                       [](const DecodedAnswer &answer) { return !answer.faults.empty(); });
}
