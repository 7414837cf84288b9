// An answer record of any texts and numbers: UTF-16 fields that U+0000 parts, in the order of the
// layout but the slots at the end. Every field has its bytes, and the reader of answer files finds
// in them what was put in.

#include "Fuzzing.h"

#include "output/AnswerFile.h"
#include "output/RecordLayout.h"
#include "platform/ShiftJis.h"
#include "tldb/answers/AnswerFile.h"
#include "util/VbText.h"

#include <QStringList>
#include <algorithm>

namespace {

/// Cuts the next field off the input.
QString TakeText(QStringView &input)
{
    const qsizetype end = input.indexOf(QChar(0));
    const QString field = (end < 0 ? input : input.left(end)).toString();
    input = end < 0 ? QStringView() : input.mid(end + 1);
    return field;
}

/// A number is one as the masters have it when it has an exponent, as typed otherwise.
template <typename Structure>
void Take(QStringView &input, Structure &to, std::span<const RecordField<Structure>> fields)
{
    for (const RecordField<Structure> &field : fields) {
        const QString text = TakeText(input);
        if (const auto *member = std::get_if<QString Structure::*>(&field.member))
            to.**member = text;
        else
            to.*std::get<1>(field.member) = text.contains('e')
                                                ? Decimal::FromDouble(text.toDouble())
                                                : Decimal::FromText(text);
    }
}

/// Puts together what a record's bytes must be, and what is to be read from them.
class Expectation
{
public:
    template <typename Structure>
    void Add(const Structure &from, std::span<const RecordField<Structure>> fields)
    {
        for (const RecordField<Structure> &field : fields) {
            if (field.kind == FieldKind::Number)
                AddNumber(from.*std::get<1>(field.member), *ParseDigitSpec(field.digitSpec));
            else if (field.kind == FieldKind::Date)
                AddDate(from.*std::get<0>(field.member));
            else
                AddText(field.name, from.*std::get<0>(field.member), field.length);
        }
    }

    QByteArray bytes;
    std::vector<AnswerValue> values;

private:
    void AddText(const char *name, const QString &text, int length)
    {
        const QString cut
            = (IsShiftJisText(text.left(length)) ? text : ToCodePage(text)).left(length);
        QByteArray field;
        bool isWhole = true; // nothing is lost on the way
        for (qsizetype at = 0; at < cut.size();) {
            const bool isPair
                = cut[at].isHighSurrogate() && at + 1 < cut.size() && cut[at + 1].isLowSurrogate();
            const QString character = cut.mid(at, isPair ? 2 : 1);
            const QByteArray encoded = ToShiftJis(character);
            isWhole = isWhole && FromShiftJis(encoded) == character;
            field += encoded;
            at += character.size();
        }
        isWhole = isWhole && field.size() <= length;
        bytes += field.left(length).leftJustified(length, ' ');
        if (isWhole)
            values.push_back({name, RTrim(QString(cut).replace('\r', ' ').replace('\n', ' '))});
    }

    void AddDate(const QString &stored)
    {
        if (Trim(stored.left(8)).size() < 2)
            bytes += "000000";
        else
            AddText("", stored.mid(2), 6);
    }

    void AddNumber(const Decimal &number, const DigitCounts &counts)
    {
        const auto [integerDigits, decimals] = counts;
        const QString text = number.ToText().remove('-');
        const QString digits
            = text.section('.', 0, 0).right(integerDigits).rightJustified(integerDigits, '0')
              + text.section('.', 1).left(decimals).leftJustified(decimals, '0');
        Require(
            std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= '0' && c <= '9'; }),
            "a number is digits", text);
        bytes += digits.toLatin1();
    }
};

/// A packed text or number is never malformed; a date or kind is what the database had.
bool MayBeMalformed(const QString &fault)
{
    const QString field = fault.section(':', 0, 0);
    return field.endsWith("Date") || field.endsWith("Kind") || field == "answerMark";
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input(reinterpret_cast<const QChar *>(data), qsizetype(size / sizeof(QChar)));
    AnswerRecord record;
    QStringView rest = input;
    Take(rest, record, LongLayout.head);
    Take(rest, record, LongLayout.tail);
    for (AnswerSlot &slot : record.lines)
        Take(rest, slot, LongLayout.slot);

    Expectation expected;
    expected.Add(record, LongLayout.head);
    const size_t headValues = expected.values.size();
    for (const AnswerSlot &slot : record.lines)
        expected.Add(slot, LongLayout.slot);
    expected.values.resize(headValues);
    expected.Add(record, LongLayout.tail);
    AnswerBuffer buffer;
    buffer.fill('~');
    PackAnswerRecord(record, buffer);
    const QByteArray packed(buffer.data(), qsizetype(buffer.size()));
    Require(packed == expected.bytes, "every field has its bytes in its place", input);

    const QByteArray line = BlankLineBreaks(packed, {});
    Require(line == QByteArray(packed).replace('\r', ' ').replace('\n', ' '),
            "line breaks become blanks", input);
    const std::vector<DecodedAnswer> answers = DecodeAnswers(line + "\r\n");
    Require(answers.size() == 1 && answers[0].length == LongRecordLength, "a line is one record");
    for (const AnswerValue &value : expected.values)
        Require(value.name.isEmpty() || answers[0].Value(value.name) == value.text,
                "what was put in is read", value.text);
    for (const AnswerFault &fault : answers[0].faults)
        Require(MayBeMalformed(fault.what), "a packed field is well-formed", fault.what);
    return 0;
}
