#include "output/AnswerRecord.h"

#include "output/ExpectedRecord.h"
#include "support/QtPrinters.h"

namespace {

QByteArray Pack(const AnswerRecord &record)
{
    AnswerBuffer buffer;
    buffer.fill('~'); // whatever the record before has left
    PackAnswerRecord(record, buffer);
    return {buffer.data(), qsizetype(buffer.size())};
}

} // namespace

TEST(AnswerRecord, TextsAreCutByCharactersThenByBytes)
{
    const struct
    {
        QString AnswerRecord::*member;
        QString text;
        int position;
        QByteArray bytes; ///< of the field
    } cases[] = {
        // Twelve characters of two bytes: ten have room.
        {&AnswerRecord::customerSectionName, "亜唖娃阿哀愛挨姶逢葵茜穐", 1217,
         "\x88\x9f\x88\xa0\x88\xa1\x88\xa2\x88\xa3\x88\xa4\x88\xa5\x88\xa6\x88\xa7\x88\xa8"},
        {&AnswerRecord::unit, "資材部", 92, "\x8e\x91\x8d"},
        {&AnswerRecord::customerSectionCode, "①㈱髙", 40, "\x87\x40\x87\x8a\xfb\xfc  "},
        {&AnswerRecord::customerSectionCode, "A€한B", 40, "A??B    "},
        {&AnswerRecord::customerSideCode, "  X", 28, "  X         "},
        // What has another code in the table, or only a composed one; cut when it is put together.
        {&AnswerRecord::customerSectionCode, "〜−‖¢", 40, "\x81\x60\x81\x7c\x81\x61\x81\x91"},
        {&AnswerRecord::unit, "か\u3099は\u309a", 92, "\x82\xaa\x82"},
        {&AnswerRecord::unit, QString("A%1B").arg(QChar(0)), 92, "A B"},
        // The surrogate halves count as two characters, as everywhere in the system.
        {&AnswerRecord::infoKind, "𠮷ABC", 6, "?AB "},
    };
    for (const auto &[member, text, position, bytes] : cases) {
        SCOPED_TRACE(text.toStdString());
        AnswerRecord record;
        record.*member = text;
        ExpectSameBytes(Pack(record), ExpectedRecord().At(position, bytes).bytes);
        AnswerBuffer buffer;
        EXPECT_EQ(PackAnswerRecord(record, buffer), !bytes.contains('?'));
    }
}

TEST(AnswerRecord, DatesAndNumbers)
{
    const struct
    {
        const char *date;
        const char *packedDate;
        const char *number;
        const char *packedQuantity; ///< 9 and 3 digits
        const char *packedNumber;
    } cases[] = {
        {"20261124", "261124", "-12.5", "000000012500", "00012"},
        {"        ", "000000", "1.9999", "000000001999", "00001"},
        {"99999999", "999999", "12345678901.5", "345678901500", "78901"},
        {"2026", "26    ", "0.25", "000000000250", "00000"},
    };
    for (const auto &[date, packedDate, number, packedQuantity, packedNumber] : cases) {
        SCOPED_TRACE(date);
        AnswerRecord record;
        record.recordNumber = record.orderQuantity = Decimal::FromText(QString(number));
        record.lines[30] = {date, "P31", date, record.orderQuantity, "2"};
        ExpectedRecord expected;
        expected.At(1, packedNumber).At(95, packedQuantity);
        expected.Slot(31, QByteArray(packedDate) + "P31     " + packedDate + packedQuantity + '2');
        ExpectSameBytes(Pack(record), expected.bytes);
    }
}
