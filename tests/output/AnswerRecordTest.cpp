#include "output/AnswerRecord.h"

#include "output/ExpectedRecord.h"
#include "output/RecordLayout.h"
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

TEST(AnswerRecord, EveryFieldHasItsPlace)
{
    AnswerRecord record;
    record.recordNumber = 42;
    record.infoKind = "0702";
    record.processingDate = "20261124";
    record.vanCode = "V00001748878";
    record.customerSideCode = "SUP1201";
    record.customerSectionCode = "1100";
    record.orderNo = "PO-1";
    record.makerNo = "MAKER-1";
    record.answerKind = "2";
    record.deliveryKind = "7";
    record.unit = "PCS";
    record.orderQuantity = Decimal::FromText(u"1234.5");
    record.buyer = "BUYER";
    record.customerProductCode = "CUSTOMER'S CODE";
    record.ownProductCode = "OWN CODE";
    record.lines[0] = {"20261201", "P0000001", "20261202", 10, "1"};
    record.lines[30] = {"20511231", "P31", "20500101", Decimal::FromText(u"0.25"), "2"};
    record.reserve1 = "R1";
    record.customerSectionName = "SECTION";
    record.reserve2 = ToWideText({}, 14);
    record.reserve3 = ToWideText({}, 60);
    record.reserve4 = ToWideText({}, 40);

    ExpectedRecord expected;
    expected.At(1, "000420702261124V00001748878SUP1201     1100    PO-1")
        .At(71, "MAKER-1            27PCS000001234500BUYER  CUSTOMER'S CODE")
        .At(139, "OWN CODE")
        .Slot(1, "261201P00000012612020000000100001")
        .Slot(31, "511231P31     5001010000000002502")
        .At(1187, "R1                            SECTION")
        .WideReserves();
    ExpectSameBytes(Pack(record), expected.bytes);
    AnswerBuffer buffer;
    buffer.fill('~');
    PackAnswerRecord(record, ShortLayout, buffer);
    EXPECT_EQ(QByteArray(buffer.data(), LongRecordLength),
              expected.Short().leftJustified(1350, '~'));

    ClearAnswerRecord(record);
    ExpectSameBytes(Pack(record), ExpectedRecord().bytes);
}

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
        // A lead byte alone stays at the end of the field.
        {&AnswerRecord::unit, "資材部", 92, "\x8e\x91\x8d"},
        {&AnswerRecord::customerSectionCode, "①㈱髙", 40, "\x87\x40\x87\x8a\xfb\xfc  "},
        {&AnswerRecord::customerSectionCode, "―～－￥", 40, "\x81\x5c\x81\x60\x81\x7c\x81\x8f"},
        {&AnswerRecord::customerSectionCode, "A€한B", 40, "A??B    "},
        {&AnswerRecord::customerSectionCode, "A\tB\rC\nD\\", 40, "A\tB\rC\nD\\"},
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

TEST(AnswerRecord, Dates)
{
    const std::pair<const char *, const char *> cases[] = {
        {"20261124", "261124"},  {"19970528", "970528"}, {"", "000000"},
        {"        ", "000000"},  {"99999999", "999999"}, {"2026", "26    "},
        {"202611240", "261124"},
    };
    for (const auto &[stored, field] : cases) {
        SCOPED_TRACE(stored);
        AnswerRecord record;
        record.processingDate = stored;
        record.lines[1].specifiedDate = stored;
        record.lines[2].answeredDate = stored;
        ExpectedRecord expected;
        expected.At(10, field).At(164 + 33, field).At(164 + 2 * 33 + 14, field);
        ExpectSameBytes(Pack(record), expected.bytes);
    }
}

TEST(AnswerRecord, Numbers)
{
    const struct
    {
        const char *value;
        const char *quantity; ///< as a field of 9 and 3 digits
        const char *number;   ///< as a field of 5 digits
    } cases[] = {
        {"-12.5", "000000012500", "00012"},
        {"1.9999", "000000001999", "00001"},
        {"12345678901.5", "345678901500", "78901"},
    };
    for (const auto &[value, quantity, number] : cases) {
        SCOPED_TRACE(value);
        AnswerRecord record;
        record.recordNumber = Decimal::FromText(QString(value));
        record.orderQuantity = record.recordNumber;
        record.lines[0].quantity = record.recordNumber;
        ExpectedRecord expected;
        expected.At(1, number).At(95, quantity).At(164 + 20, quantity);
        ExpectSameBytes(Pack(record), expected.bytes);
    }
}

TEST(ToWideText, FillsWithWideBlanks)
{
    const struct
    {
        QString text;
        int bytes;
        QString wide;
    } cases[] = {
        {"", 14, "　　　　　　　"}, {"A1 ~", 12, "Ａ１　～　　"}, {"C:\\x", 10, "Ｃ：￥ｘ　"},
        {"ABC", 4, "ＡＢ"},         {"ﾃﾞﾀﾊﾟ", 8, "デタパ　"},     {"ﾞｱ｡", 8, "゛ア。　"},
    };
    for (const auto &[text, bytes, wide] : cases) {
        // The ASCII tilde has no other wide form than U+FF5E.
        EXPECT_EQ(ToWideText(text, bytes), wide) << text.toStdString();
    }
}
