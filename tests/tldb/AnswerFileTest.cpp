#include "ToolRun.h"
#include "output/ExpectedRecord.h"
#include "support/QtPrinters.h"
#include "support/TestFolder.h"

#include "platform/ShiftJis.h"
#include "tldb/answers/AnswerFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

namespace {

/// An order with two deliveries.
ExpectedRecord TwoDeliveries()
{
    return ExpectedRecord()
        .At(1, "000410702260401V00001123456SUP1201     1100    2603-00010001")
        .At(71, "S2603-0007")
        .At(90, "13" + ToShiftJis(u"個") + " 000001234500" + ToShiftJis(u"小日向"))
        .At(114, "RK-00007#2")
        .At(139, "A100013")
        .Slot(1, "260420003700372604200000010000001")
        .Slot(2, "260420003700389999990000002345002")
        .At(1217, ToShiftJis(u"資材部購買一課"))
        .WideReserves();
}

/// Its record without the line end.
QByteArray Record(int length)
{
    return TwoDeliveries().bytes.left(length);
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

QString Joined(const std::vector<AnswerValue> &values)
{
    QStringList parts;
    for (const AnswerValue &value : values)
        parts += value.name + '=' + value.text;
    return parts.join(' ');
}

} // namespace

TEST(AnswerFile, FieldsOfBothLayouts)
{
    // A text's last byte may be half a character.
    const QByteArray record = TwoDeliveries()
                                  .At(92, "\x83\x70\x83")
                                  .Slot(31, "000000        260131999999999999 ")
                                  .bytes;
    const QString fields
        = "recordNumber=00041 informationKind=0702 processingDate=20260401 vanCode=V00001123456 "
          "customerSideCode=SUP1201 customerSectionCode=1100 orderNumber=2603-00010001 "
          "makerNumber=S2603-0007 answerKind=1 deliveryKind=3 unit=パ\uFFFD orderQuantity=1234.5 "
          "buyerInCharge=小日向 customerProductCode=RK-00007#2 ownProductCode=A100013 reserve1= "
          "customerSectionName=資材部購買一課";
    const QString wideReserves = " reserve2=" + QString(7, QChar(0x3000))
                                 + " reserve3=" + QString(30, QChar(0x3000))
                                 + " reserve4=" + QString(20, QChar(0x3000));
    const QStringList deliveries
        = {"1 specifiedDate=20260420 deliveryNumber=00370037 answeredDate=20260420 "
           "answeredQuantity=1000 answerMark=1",
           "2 specifiedDate=20260420 deliveryNumber=00370038 answeredDate=99999999 "
           "answeredQuantity=234.5 answerMark=2",
           "31 specifiedDate= deliveryNumber= answeredDate=20260131 "
           "answeredQuantity=999999999.999 answerMark="};
    for (const int length : {1236, 1350}) {
        SCOPED_TRACE(length);
        const auto answers = DecodeAnswers(record.left(length) + LineEnd);
        ASSERT_EQ(answers.size(), 1u);
        EXPECT_TRUE(answers[0].faults.empty());
        EXPECT_EQ(answers[0].length, length);
        EXPECT_EQ(Joined(answers[0].values), length == 1236 ? fields : fields + wideReserves);
        QStringList found;
        for (const AnsweredDelivery &delivery : answers[0].deliveries)
            found += QString::number(delivery.slot) + ' ' + Joined(delivery.values);
        EXPECT_EQ(found, deliveries);
    }
}

TEST(AnswerFile, MalformedFieldsAreNamedWithTheirByte)
{
    const struct
    {
        int from;
        QByteArray bytes;
        const char *fault;
    } cases[] = {
        {6, "0704", "6 informationKind: not an allowed value"},
        {10, "26040a", "15 processingDate: not a digit"},
        {10, "000000", "10 processingDate: not a date"},
        {16, "V\x81\x20", "17 vanCode: not a character of a text"},
        {71, "S2\r", "73 makerNumber: not a character of a text"},
        {95, "00000123.500", "103 orderQuantity: not a digit"},
        {196, "0", "196 answerMark: not an allowed value"},
        {1217, "\x81\xad", "1217 customerSectionName: not a character of a text"},
    };
    for (const auto &[from, bytes, fault] : cases) {
        const QByteArray record = TwoDeliveries().At(from, bytes).Short();
        EXPECT_EQ(FaultsOf(record + LineEnd), QStringList{fault}) << fault;
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
        {good + LineEnd + good + LineEnd, {}, 2},
        {good, {"1351 no CR LF after the record"}, 1},
        {good + "\n" + good + LineEnd, {"1351 no CR LF after the record"}, 2},
        {good + LineEnd + LineEnd + good + LineEnd,
         {"1353 record of 0 bytes, not 1236 or 1350"},
         3},
        {good + LineEnd + "\x1a",
         {"1353 record of 1 bytes, not 1236 or 1350", "1354 no CR LF after the record"},
         2},
    };
    for (const auto &[file, faults, records] : cases) {
        SCOPED_TRACE(faults.join(", ").toStdString());
        EXPECT_EQ(FaultsOf(file), faults);
        EXPECT_EQ(DecodeAnswers(file).size(), records);
    }
}

TEST(ShowAnswersCommand, PlainAndJson)
{
    const TestFolder folder;
    const QString path = folder.Path("A.TXT");
    folder.Write("A.TXT", Record(1350) + LineEnd);
    const ToolRun good({"show-answers", path});
    EXPECT_EQ(good.exitCode, ExitCode::Ok);
    EXPECT_EQ(good.err, "");
    EXPECT_TRUE(good.OutLines().contains("orderNumber: 2603-00010001"));
    EXPECT_TRUE(good.OutLines().contains("delivery 2 answeredQuantity: 234.5"));

    const QByteArray bad = TwoDeliveries().At(1, "\x1b[2J0").bytes;
    folder.Write("A.TXT", Record(1350) + LineEnd + bad + LineEnd);
    const ToolRun run({"show-answers", path});
    EXPECT_EQ(run.exitCode, ExitCode::Found);
    EXPECT_TRUE(run.OutLines().contains("fault: byte 1353: recordNumber: not a digit"));
    EXPECT_FALSE(run.out.contains('\x1b')) << "a control character reached the terminal";
    EXPECT_TRUE(run.err.endsWith("1 of 2 records are malformed\n"));
    const QByteArray json = ToolRun({"show-answers", "--json", path}).out.toUtf8();
    const QJsonArray records = QJsonDocument::fromJson(json).array();
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0]["customerSectionName"].toString(), QStringLiteral("資材部購買一課"));
    EXPECT_EQ(records[0]["deliveries"][1]["answeredDate"].toString(), "99999999");
    EXPECT_EQ(records[1]["faults"][0]["position"].toInt(), 1353);

    folder.Write("A.TXT", "");
    const ToolRun empty({"show-answers", path, "--json"});
    EXPECT_EQ(empty.exitCode, ExitCode::Ok);
    EXPECT_TRUE(QJsonDocument::fromJson(empty.out.toUtf8()).isArray());
    EXPECT_EQ(ToolRun({"show-answers", folder.Path("NONE.TXT")}).exitCode, ExitCode::Found);
    EXPECT_EQ(ToolRun({"show-answers", folder.Path()}).exitCode, ExitCode::Found);
}
