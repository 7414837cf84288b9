// Any bytes as an answer file. Every byte belongs to a record or to the end of its line, every
// oddity is a fault, and the values of a record without faults give its bytes again.

#include "Fuzzing.h"

#include "output/RecordLayout.h"
#include "platform/ShiftJis.h"
#include "tldb/answers/AnswerFile.h"
#include "util/VbText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>

namespace {

bool IsFieldOf(const QByteArray &bytes, const QString &value, FieldKind kind)
{
    switch (kind) {
    case FieldKind::Text:
        // Half a character is no text; two byte pairs of the code page may be the same character.
        return value.contains(QChar(QChar::ReplacementCharacter))
               || (FromShiftJis(ToShiftJis(value)) == value
                   && ToShiftJis(value).size() <= bytes.size());
    case FieldKind::Number: {
        const QString whole = value.section('.', 0, 0);
        const QString decimals = value.section('.', 1);
        return bytes.size() == 5
                   ? value == bytes
                   : whole.rightJustified(9, '0') + decimals.leftJustified(3, '0') == bytes;
    }
    case FieldKind::Date:
        return value.isEmpty() ? bytes == "000000" : value.size() == 8 && value.mid(2) == bytes;
    }
    return false;
}

/// Checks the values of fields that follow each other; returns where the next field begins.
template <typename Structure>
qsizetype CheckValues(const QByteArray &record, std::span<const RecordField<Structure>> fields,
                      std::span<const AnswerValue> values, qsizetype start)
{
    Require(values.size() == fields.size(), "a field has one value");
    for (size_t at = 0; at < values.size(); ++at) {
        Require(IsFieldOf(record.mid(start, fields[at].length), values[at].text, fields[at].kind),
                fields[at].name, values[at].text);
        start += fields[at].length;
    }
    return start;
}

void CheckRecord(const QByteArray &record, const DecodedAnswer &answer)
{
    const bool isShort = record.size() == ShortRecordLength;
    const bool hasLayout = isShort || record.size() == LongRecordLength;
    Require(hasLayout || answer.values.empty(), "only a record of a layout has values");
    if (!answer.faults.empty())
        return;
    Require(hasLayout, "a record of another length has a fault");
    const RecordLayout &layout = isShort ? ShortLayout : LongLayout;
    const std::span values(answer.values);
    CheckValues(record, layout.head, values.first(layout.head.size()), 0);
    for (const AnsweredDelivery &delivery : answer.deliveries)
        CheckValues(record, layout.slot, delivery.values,
                    layout.SlotsStart() + layout.SlotLength() * (delivery.slot - 1));
    const qsizetype end
        = CheckValues(record, layout.tail, values.subspan(layout.head.size()), layout.TailStart());
    Require(end == record.size(), "the fields take up the whole record");
}

/// Checks one answer of the file that begins at this byte; returns where the next begins.
qint64 CheckAnswer(const QByteArray &file, qint64 start, const DecodedAnswer &answer)
{
    Require(answer.position == start + 1, "records follow each other");
    const qint64 end = start + answer.length;
    Require(answer.length >= 0 && end <= file.size(), "a record is in its file");
    const QByteArray record = file.mid(start, answer.length);
    Require(!record.contains('\n'), "a record is a line");
    CheckRecord(record, answer);

    const auto tellsOfEnd = [end](const AnswerFault &fault) {
        return fault.position == end + 1 && fault.what.startsWith("no CR LF");
    };
    const bool isFault = std::any_of(answer.faults.begin(), answer.faults.end(), tellsOfEnd);
    for (const QByteArray lineEnd : {"\r\n", "\n", "\r", ""}) {
        if (file.mid(end, lineEnd.size()) != lineEnd)
            continue;
        Require((lineEnd == "\r\n") != isFault, "a line that ends otherwise has a fault");
        Require(lineEnd.endsWith('\n') || end + lineEnd.size() == file.size(),
                "only the last line may have no end");
        return end + lineEnd.size();
    }
    return file.size();
}

bool IsPrintable(const QString &text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c == '\n' || c.category() != QChar::Other_Control; });
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray file(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::vector<DecodedAnswer> answers = DecodeAnswers(file);
    qint64 start = 0;
    for (const DecodedAnswer &answer : answers) {
        for (const AnswerFault &fault : answer.faults)
            Require(fault.position > start && fault.position <= start + answer.length + 1,
                    "a fault is at a byte of its record", fault.what);
        start = CheckAnswer(file, start, answer);
    }
    Require(start == file.size(), "every byte belongs to a record");

    Require(IsPrintable(DescribeAnswers(answers, AnswerFormat::Plain)), "no control characters");
    const QByteArray json = DescribeAnswers(answers, AnswerFormat::Json).toUtf8();
    Require(QJsonDocument::fromJson(json).array().size() == qsizetype(answers.size()),
            "the array has every record", QString::fromUtf8(json));
    return 0;
}
