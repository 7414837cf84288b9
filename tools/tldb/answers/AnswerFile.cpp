#include "tldb/answers/AnswerFile.h"

#include "output/RecordLayout.h"
#include "platform/ShiftJis.h"
#include "util/Decimal.h"
#include "util/VbText.h"
#include "util/bDate.h"

#include <algorithm>

namespace {

constexpr QChar Unreadable(QChar::ReplacementCharacter);

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

    /// The values of fields that follow each other from byte `start` on (0 is the record's first).
    template <typename Structure>
    std::vector<AnswerValue> Read(std::span<const RecordField<Structure>> fields, qsizetype start)
    {
        std::vector<AnswerValue> values;
        for (const RecordField<Structure> &field : fields) {
            m_start = start;
            m_bytes = m_line.sliced(start, field.length);
            m_name = field.name;
            values.push_back({m_name, ReadField(field)});
            start += field.length;
        }
        return values;
    }

private:
    template <typename Structure>
    QString ReadField(const RecordField<Structure> &field)
    {
        switch (field.kind) {
        case FieldKind::Text:
            return field.values[0] ? ReadOneOf(field.values) : ReadText();
        case FieldKind::Date:
            return ReadDate(field.values);
        case FieldKind::Number:
            return ReadNumber(*ParseDigitSpec(field.digitSpec));
        }
        return {};
    }

    static bool IsOneOf(QByteArrayView bytes, std::span<const char *const> values)
    {
        return std::any_of(values.begin(), values.end(),
                           [bytes](const char *value) { return value && bytes == value; });
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
            if (character == "\r" || character[0] == '\0'
                || FromShiftJis(character).contains(Unreadable)) {
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

    /// Without decimals the digits as they stand.
    QString ReadNumber(const DigitCounts &digits)
    {
        const QString text = RawText();
        if (!CheckDigits() || digits.decimals == 0)
            return text;
        return Decimal::FromText(text.left(digits.integerDigits) + '.'
                                 + text.mid(digits.integerDigits))
            .ToText();
    }

    QString ReadDate(std::span<const char *const> others)
    {
        if (!CheckDigits())
            return RawText();
        if (IsOneOf(m_bytes, others))
            return m_bytes == NoPackedDate ? "99999999" : "";
        const QString date = AddCentury(RawText());
        if (!IsValidDate(date))
            AddFault(0, "not a date");
        return date;
    }

    QString ReadOneOf(std::span<const char *const> allowed)
    {
        if (!IsOneOf(m_bytes, allowed))
            AddFault(0, "not an allowed value");
        return RawText();
    }

    QByteArrayView m_line;
    DecodedAnswer &m_answer;
    qsizetype m_start = 0;
    QByteArrayView m_bytes;
    QString m_name;
};

/// The layout of a record of this length; null when there is none.
const RecordLayout *LayoutOf(qsizetype length)
{
    const auto layout = std::find_if(std::begin(RecordLayouts), std::end(RecordLayouts),
                                     [length](auto *known) { return known->Length() == length; });
    return layout == std::end(RecordLayouts) ? nullptr : *layout;
}

/// How a slot looks that no delivery fills.
QByteArray ClearedSlot(const RecordLayout &layout)
{
    QByteArray bytes;
    for (const RecordField<AnswerSlot> &field : layout.slot)
        bytes += QByteArray(field.length, field.kind == FieldKind::Text ? ' ' : '0');
    return bytes;
}

void ReadRecord(QByteArrayView line, DecodedAnswer &answer)
{
    const RecordLayout *layout = LayoutOf(line.size());
    if (!layout) {
        answer.faults.push_back({answer.position, QString("record of %1 bytes, not %2 or %3")
                                                      .arg(line.size())
                                                      .arg(ShortRecordLength)
                                                      .arg(LongRecordLength)});
        return;
    }
    const QByteArray cleared = ClearedSlot(*layout);
    FieldReader reader(line, answer);
    answer.values = reader.Read(layout->head, 0);
    for (int slot = 0; slot < AnswerSlotCount; ++slot) {
        const int start = layout->SlotsStart() + slot * layout->SlotLength();
        if (line.sliced(start, layout->SlotLength()) != cleared)
            answer.deliveries.push_back({slot + 1, reader.Read(layout->slot, start)});
    }
    const auto tail = reader.Read(layout->tail, layout->TailStart());
    answer.values.insert(answer.values.end(), tail.begin(), tail.end());
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
