// An answer record of any texts and numbers: UTF-16 fields that U+0000 parts, first those of the
// record, then of one slot after the other. Every field has its bytes in its place, and the reader
// of answer files finds in them what was put in.

#include "Fuzzing.h"

#include "output/AnswerFile.h"
#include "output/AnswerRecord.h"
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

/// A number as the masters have it when it has an exponent, as typed otherwise.
Decimal TakeNumber(QStringView &input)
{
    const QString text = TakeText(input);
    return text.contains('e') ? Decimal::FromDouble(text.toDouble()) : Decimal::FromText(text);
}

/// Puts together what a record's bytes must be, and what is to be read from them.
class Expectation
{
public:
    void Text(const char *name, const QString &text, int length)
    {
        const QString cut = text.left(length);
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
        if (name && isWhole)
            values.push_back({name, RTrim(QString(cut).replace('\r', ' ').replace('\n', ' '))});
    }

    void Date(const QString &stored)
    {
        if (Trim(stored.left(8)).size() < 2)
            bytes += "000000";
        else
            Text(nullptr, stored.mid(2), 6);
    }

    void Number(const Decimal &number, int integerDigits, int decimals)
    {
        const QString text = number.ToText().remove('-');
        const QString digits
            = text.section('.', 0, 0).right(integerDigits).rightJustified(integerDigits, '0')
              + text.section('.', 1).left(decimals).leftJustified(decimals, '0');
        Require(
            std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= '0' && c <= '9'; }),
            "a number is digits", text);
        bytes += digits.toLatin1();
    }

    QByteArray bytes;
    std::vector<AnswerValue> values;
};

AnswerRecord TakeRecord(QStringView input)
{
    AnswerRecord record;
    record.recordNumber = TakeNumber(input);
    record.orderQuantity = TakeNumber(input);
    for (QString AnswerRecord::*member :
         {&AnswerRecord::infoKind, &AnswerRecord::processingDate, &AnswerRecord::vanCode,
          &AnswerRecord::customerSideCode, &AnswerRecord::customerSectionCode,
          &AnswerRecord::orderNo, &AnswerRecord::makerNo, &AnswerRecord::answerKind,
          &AnswerRecord::deliveryKind, &AnswerRecord::unit, &AnswerRecord::buyer,
          &AnswerRecord::customerProductCode, &AnswerRecord::ownProductCode,
          &AnswerRecord::reserve1, &AnswerRecord::customerSectionName, &AnswerRecord::reserve2,
          &AnswerRecord::reserve3, &AnswerRecord::reserve4})
        record.*member = TakeText(input);
    for (AnswerSlot &slot : record.lines) {
        slot.specifiedDate = TakeText(input);
        slot.deliveryNo = TakeText(input);
        slot.answeredDate = TakeText(input);
        slot.quantity = TakeNumber(input);
        slot.mark = TakeText(input);
    }
    return record;
}

Expectation Expected(const AnswerRecord &record)
{
    Expectation expected;
    expected.Number(record.recordNumber, 5, 0);
    expected.Text("informationKind", record.infoKind, 4);
    expected.Date(record.processingDate);
    expected.Text("vanCode", record.vanCode, 12);
    expected.Text("customerSideCode", record.customerSideCode, 12);
    expected.Text("customerSectionCode", record.customerSectionCode, 8);
    expected.Text("orderNumber", record.orderNo, 23);
    expected.Text("makerNumber", record.makerNo, 19);
    expected.Text("answerKind", record.answerKind, 1);
    expected.Text("deliveryKind", record.deliveryKind, 1);
    expected.Text("unit", record.unit, 3);
    expected.Number(record.orderQuantity, 9, 3);
    expected.Text("buyerInCharge", record.buyer, 7);
    expected.Text("customerProductCode", record.customerProductCode, 25);
    expected.Text("ownProductCode", record.ownProductCode, 25);
    for (const AnswerSlot &slot : record.lines) {
        expected.Date(slot.specifiedDate);
        expected.Text(nullptr, slot.deliveryNo, 8);
        expected.Date(slot.answeredDate);
        expected.Number(slot.quantity, 9, 3);
        expected.Text(nullptr, slot.mark, 1);
    }
    expected.Text("reserve1", record.reserve1, 30);
    expected.Text("customerSectionName", record.customerSectionName, 20);
    expected.Text("reserve2", record.reserve2, 14);
    expected.Text("reserve3", record.reserve3, 60);
    expected.Text("reserve4", record.reserve4, 40);
    return expected;
}

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
    const AnswerRecord record = TakeRecord(input);
    const Expectation expected = Expected(record);
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
        Require(answers[0].Value(value.name) == value.text, "what was put in is read", value.text);
    for (const AnswerFault &fault : answers[0].faults)
        Require(MayBeMalformed(fault.what), "a packed field is well-formed", fault.what);
    return 0;
}
