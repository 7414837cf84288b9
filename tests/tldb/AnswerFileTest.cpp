#include "ToolRun.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include "platform/ShiftJis.h"
#include "tldb/AnswerFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

/// Writes bytes over a record from a byte on, 1 being its first.
void Put(QByteArray &record, int from, const QByteArray &bytes)
{
    record.replace(from - 1, bytes.size(), bytes);
}

/// A record of an order with two deliveries, without its line end.
QByteArray Record(int length)
{
    QByteArray record(1350, ' ');
    Put(record, 1,
        "000410702"
        "260401"
        "V00001123456"
        "SUP1201");
    Put(record, 40, "1100");
    Put(record, 48, "2603-00010001");
    Put(record, 71, "S2603-0007");
    Put(record, 90, "13" + ToShiftJis(u"個") + " " + "000001234500");
    Put(record, 107, ToShiftJis(u"小日向"));
    Put(record, 114, "RK-00007#2");
    Put(record, 139, "A100013");
    const QByteArray cleared = QByteArray(6, '0') + QByteArray(8, ' ') + QByteArray(18, '0') + " ";
    for (int slot = 0; slot < 31; ++slot)
        Put(record, 164 + 33 * slot, cleared);
    Put(record, 164,
        "26042000370037260420000001000000"
        "1");
    Put(record, 197,
        "26042000370038999999000000234500"
        "2");
    Put(record, 1217, ToShiftJis(u"資材部購買一課"));
    for (int at = 1237; at <= 1350; at += 2)
        Put(record, at, "\x81\x40");
    return record.left(length);
}

const QByteArray LineEnd = "\r\n";

/// "position what" of every fault of a file.
QStringList FaultsOf(const QByteArray &file)
{
    QStringList faults;
    for (const DecodedAnswer &answer : DecodeAnswers(file))
        for (const AnswerFault &fault : answer.faults)
            faults += QString("%1 %2").arg(fault.position).arg(fault.what);
    return faults;
}

QString Joined(const AnsweredDelivery &delivery)
{
    QStringList parts = {QString::number(delivery.slot)};
    for (const AnswerValue &value : delivery.values)
        parts += value.name + '=' + value.text;
    return parts.join(' ');
}

} // namespace

TEST(AnswerFile, FieldsOfBothLayouts)
{
    const struct
    {
        const char *name;
        const char16_t *text;
    } fields[] = {
        {"recordNumber", u"00041"},
        {"informationKind", u"0702"},
        {"processingDate", u"20260401"},
        {"vanCode", u"V00001123456"},
        {"customerSideCode", u"SUP1201"},
        {"customerSectionCode", u"1100"},
        {"orderNumber", u"2603-00010001"},
        {"makerNumber", u"S2603-0007"},
        {"answerKind", u"1"},
        {"deliveryKind", u"3"},
        {"unit", u"個"},
        {"orderQuantity", u"1234.5"},
        {"buyerInCharge", u"小日向"},
        {"customerProductCode", u"RK-00007#2"},
        {"ownProductCode", u"A100013"},
        {"reserve1", u""},
        {"customerSectionName", u"資材部購買一課"},
    };
    for (const int length : {1236, 1350}) {
        SCOPED_TRACE(length);
        const auto answers = DecodeAnswers(Record(length) + LineEnd);
        ASSERT_EQ(answers.size(), 1u);
        const DecodedAnswer &answer = answers.front();
        EXPECT_TRUE(answer.faults.empty());
        EXPECT_EQ(answer.position, 1);
        EXPECT_EQ(answer.length, length);
        for (const auto &[name, text] : fields)
            EXPECT_EQ(answer.Value(name), QString::fromUtf16(text)) << name;
        ASSERT_EQ(answer.deliveries.size(), 2u);
        EXPECT_EQ(Joined(answer.deliveries[0]),
                  "1 specifiedDate=20260420 deliveryNumber=00370037 answeredDate=20260420 "
                  "answeredQuantity=1000 answerMark=1");
        EXPECT_EQ(Joined(answer.deliveries[1]),
                  "2 specifiedDate=20260420 deliveryNumber=00370038 answeredDate=99999999 "
                  "answeredQuantity=234.5 answerMark=2");
    }
    // Only the long layout has the last three reserves.
    const DecodedAnswer longAnswer = DecodeAnswers(Record(1350) + LineEnd).front();
    EXPECT_EQ(longAnswer.Value("reserve2"), QString(7, QChar(0x3000)));
    EXPECT_EQ(longAnswer.Value("reserve3"), QString(30, QChar(0x3000)));
    EXPECT_EQ(longAnswer.Value("reserve4"), QString(20, QChar(0x3000)));
    EXPECT_TRUE(DecodeAnswers(Record(1236) + LineEnd).front().Value("reserve2").isNull());
}

TEST(AnswerFile, TheLastSlotAndABlankSpecifiedDate)
{
    QByteArray record = Record(1236);
    Put(record, 164 + 33 * 30, "000000        260131999999999999 ");
    const DecodedAnswer answer = DecodeAnswers(record + LineEnd).front();
    EXPECT_TRUE(answer.faults.empty());
    ASSERT_EQ(answer.deliveries.size(), 3u);
    EXPECT_EQ(Joined(answer.deliveries.back()),
              "31 specifiedDate= deliveryNumber= answeredDate=20260131 "
              "answeredQuantity=999999999.999 answerMark=");
}

TEST(AnswerFile, HalfACharacterAtATextsEndIsLegal)
{
    QByteArray record = Record(1350);
    Put(record, 107, ToShiftJis(u"青葉野") + ToShiftJis(u"太").left(1));
    Put(record, 92, "\x83\x70\x83");
    const DecodedAnswer answer = DecodeAnswers(record + LineEnd).front();
    EXPECT_TRUE(answer.faults.empty());
    EXPECT_EQ(answer.Value("buyerInCharge"), QStringLiteral("青葉野\uFFFD"));
    EXPECT_EQ(answer.Value("unit"), QStringLiteral("パ\uFFFD"));
}

TEST(AnswerFile, MalformedFieldsAreNamedWithTheirByte)
{
    const struct
    {
        int from;
        QByteArray bytes;
        const char *fault;
    } cases[] = {
        {1, "0004 ", "5 recordNumber: not a digit"},
        {6, "0704", "6 informationKind: not an allowed value"},
        {10, "26040a", "15 processingDate: not a digit"},
        {10, "261301", "10 processingDate: not a date"},
        {10, "000000", "10 processingDate: not a date"},
        {10, "999999", "10 processingDate: not a date"},
        {16, "V\x81\x20", "17 vanCode: not a character of a text"},
        {48, "\xfc\xfc", "48 orderNumber: not a character of a text"},
        {71, "S2\r", "73 makerNumber: not a character of a text"},
        {90, "3", "90 answerKind: not an allowed value"},
        {90, " ", "90 answerKind: not an allowed value"},
        {95, "00000123.500", "103 orderQuantity: not a digit"},
        {164, "260230", "164 specifiedDate: not a date"},
        {164, "999999", "164 specifiedDate: not a date"},
        {178, "      ", "178 answeredDate: not a digit"},
        {195, "-", "195 answeredQuantity: not a digit"},
        {196, "0", "196 answerMark: not an allowed value"},
        {1217, "\x81\xad", "1217 customerSectionName: not a character of a text"},
    };
    // The second record's bytes count on from the first record and its line end.
    const QByteArray first = Record(1236) + LineEnd;
    for (const auto &[from, bytes, fault] : cases) {
        SCOPED_TRACE(fault);
        QByteArray record = Record(1236);
        Put(record, from, bytes);
        EXPECT_EQ(FaultsOf(record + LineEnd), QStringList{fault});
        const QString position = QString(fault).section(' ', 0, 0);
        const QString later
            = QString::number(position.toInt() + 1238) + QString(fault).mid(position.size());
        EXPECT_EQ(FaultsOf(first + record + LineEnd), QStringList{later});
    }
}

TEST(AnswerFile, AFileOfOtherLinesIsReadLineByLine)
{
    const QByteArray good = Record(1350);
    const struct
    {
        QByteArray file;
        QStringList faults;
        size_t records;
    } cases[] = {
        {"", {}, 0},
        {good + LineEnd + good + LineEnd, {}, 2},
        {good, {"1351 no CR LF after the record"}, 1},
        {good + "\n" + good + LineEnd, {"1351 no CR LF after the record"}, 2},
        {good + "\r", {"1351 no CR LF after the record"}, 1},
        {good + LineEnd + LineEnd + good + LineEnd,
         {"1353 record of 0 bytes, not 1236 or 1350"},
         3},
        {good.left(1349) + LineEnd + good + LineEnd,
         {"1 record of 1349 bytes, not 1236 or 1350"},
         2},
        {good + good + LineEnd, {"1 record of 2700 bytes, not 1236 or 1350"}, 1},
        {good + LineEnd + "\x1a",
         {"1353 record of 1 bytes, not 1236 or 1350", "1354 no CR LF after the record"},
         2},
        {good + "\r\r\n", {"1 record of 1351 bytes, not 1236 or 1350"}, 1},
    };
    for (const auto &[file, faults, records] : cases) {
        SCOPED_TRACE(faults.join(", ").toStdString());
        EXPECT_EQ(FaultsOf(file), faults);
        EXPECT_EQ(DecodeAnswers(file).size(), records);
    }
}

TEST(ShowAnswersCommand, PlainOutputAndFaults)
{
    const TestFolder folder;
    QByteArray bad = Record(1350);
    Put(bad, 1, "\x1b[2J0");
    folder.Write("GOOD.TXT", Record(1350) + LineEnd);
    folder.Write("BAD.TXT", Record(1350) + LineEnd + bad + LineEnd);

    const ToolRun good({"show-answers", folder.Path("GOOD.TXT")});
    EXPECT_EQ(good.exitCode, ExitCode::Ok);
    EXPECT_EQ(good.err, "");
    EXPECT_TRUE(good.OutLines().contains("orderNumber: 2603-00010001"));
    EXPECT_TRUE(good.OutLines().contains("delivery 2 answeredQuantity: 234.5"));
    EXPECT_FALSE(good.out.contains("fault"));

    const ToolRun run({"show-answers", folder.Path("BAD.TXT")});
    EXPECT_EQ(run.exitCode, ExitCode::Found);
    EXPECT_TRUE(run.OutLines().contains("fault: byte 1353: recordNumber: not a digit"));
    EXPECT_FALSE(run.out.contains('\x1b')) << "a control character reached the terminal";
    EXPECT_TRUE(run.err.endsWith("1 of 2 records are malformed\n"));

    const ToolRun missing({"show-answers", folder.Path("NONE.TXT")});
    EXPECT_EQ(missing.exitCode, ExitCode::Found);
    EXPECT_TRUE(missing.err.contains("NONE.TXT"));
    EXPECT_EQ(ToolRun({"show-answers", folder.Path()}).exitCode, ExitCode::Found);
}

TEST(ShowAnswersCommand, JsonIsAnArrayOfRecords)
{
    const TestFolder folder;
    folder.Write("A.TXT", Record(1236) + LineEnd + "short" + LineEnd);
    const ToolRun run({"show-answers", "--json", folder.Path("A.TXT")});
    EXPECT_EQ(run.exitCode, ExitCode::Found);
    const QJsonArray records = QJsonDocument::fromJson(run.out.toUtf8()).array();
    ASSERT_EQ(records.size(), 2);
    const QJsonObject first = records[0].toObject();
    EXPECT_EQ(first["customerSectionName"].toString(), QStringLiteral("資材部購買一課"));
    EXPECT_EQ(first["length"].toInt(), 1236);
    EXPECT_EQ(first["faults"].toArray().size(), 0);
    const QJsonArray deliveries = first["deliveries"].toArray();
    ASSERT_EQ(deliveries.size(), 2);
    EXPECT_EQ(deliveries[1].toObject()["slot"].toInt(), 2);
    EXPECT_EQ(deliveries[1].toObject()["answeredDate"].toString(), "99999999");
    const QJsonArray faults = records[1].toObject()["faults"].toArray();
    ASSERT_EQ(faults.size(), 1);
    EXPECT_EQ(faults[0].toObject()["position"].toInt(), 1239);

    folder.Write("EMPTY.TXT", "");
    const ToolRun empty({"show-answers", folder.Path("EMPTY.TXT"), "--json"});
    EXPECT_EQ(empty.exitCode, ExitCode::Ok);
    EXPECT_TRUE(QJsonDocument::fromJson(empty.out.toUtf8()).isArray());
}
