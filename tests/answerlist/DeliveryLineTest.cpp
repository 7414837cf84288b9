#include "answerlist/DeliveryLine.h"

#include "data/ProgramState.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

namespace {

class DeliveryLineTest : public testing::Test
{
protected:
    DeliveryLineTest() { file.Open(db); }

    ScriptedBoxes boxes;
    TestDatabase file;
    bDAO db;
};

} // namespace

TEST_F(DeliveryLineTest, StatementsForAStoredLine)
{
    const LineKey key{123456789012, 2, 3};
    EXPECT_EQ(BuildLineSql(key), "SELECT * FROM TLSP0010 WHERE ACCNO = 123456789012 AND "
                                 "ACCSUBNO = 2 AND SHPSUBNO = 3 AND DPOFLG = 0 ;");
    EXPECT_EQ(
        BuildUpdateSql(key, {"20261202", "20261130", "20261202", Decimal::FromText(u"1234.5"), "2"},
                       {"20261125", "101112"}),
        "UPDATE TLSP0010 SET AnsLimDate = '20261202',ShpDate = '20261130',"
        "ArvExpDate = '20261202',AnsVal = 1234.5,AnsMark = '2',UpdPGName = 'TL030101',"
        "UpdDate = '20261125',UpdTime = '101112' WHERE ACCNO = 123456789012 AND "
        "AccSubNo = 2 AND ShpSubNo = 3 AND DPOFLG = 0;");
    EXPECT_EQ(BuildUpdateSql(key, {"", "2026'", "  ", Decimal::FromText(u"-0.0010"), "1"}, {}),
              "UPDATE TLSP0010 SET AnsLimDate = '',ShpDate = '2026''',ArvExpDate = '',"
              "AnsVal = -0.001,AnsMark = '1',UpdPGName = 'TL030101',UpdDate = '',UpdTime = '' "
              "WHERE ACCNO = 123456789012 AND AccSubNo = 2 AND ShpSubNo = 3 AND DPOFLG = 0;");
}

TEST_F(DeliveryLineTest, AnInsertGivesEveryColumn)
{
    file.Insert("TLSP0010", {{"AccNo", 7},
                             {"AccSubNo", 2},
                             {"ShpSubNo", 1},
                             {"PayKeyNo", "KEY0001"},
                             {"PayKeySubNp", 4},
                             {"OdrNo", "P'O  "},
                             {"CustCD", "C1"},
                             {"CustSecCD", QVariant()},
                             {"CustSecName", "部門"},
                             {"PayDstCD", "D1"},
                             {"LimDate", "20261201"},
                             {"LimTime", "0930"},
                             {"PayNo", "P1"},
                             {"HinCD", "H1"},
                             {"AccHinCD", "A1"},
                             {"MfactNo", "M1"},
                             {"Unit", "EA"},
                             {"Tan", 0.1},
                             {"AccVal", 1000000},
                             {"IndVal", 100},
                             {"AnsVal", 60},
                             {"ShpVal", 5},
                             {"AnsLimDate", "20261202"},
                             {"AnsMark", "2"},
                             {"AnsLimUmu", 3},
                             {"ShpSts", 3},
                             {"ShpDate", "20261130"},
                             {"ArvExpDate", "20261202"},
                             {"DenKBN", 15},
                             {"ShpKBN", QVariant()},
                             {"ContractKBN", "D"},
                             {"Biko", "備考"},
                             {"OdrBiko", "注文備考"},
                             {"OdrBarCD", "BAR"},
                             {"UpdPGName", "TL010101"},
                             {"UpdDate", "20260101"},
                             {"UpdTime", "000000"}});
    const LineAnswer answer{"20261210", "20261207", "20261210", Decimal::FromText(u"40.5"), "1"};
    const WriteStamp stamp{"20261125", "101112"};
    const auto source = db.OpenRS(BuildLineSql({7, 2, 1}));
    ASSERT_TRUE(source);
    EXPECT_EQ(BuildInsertSql(*source, 9, "KEY0005", answer, stamp),
              "INSERT INTO TLSP0010 VALUES (7,2,9,'KEY0005',5,'P''O','C1','','部門','D1',"
              "'20261201','0930','P1','H1','A1','M1','EA',0.1,1000000,0,40.5,0,'20261210','1',0,1,"
              "'20261207','20261210',15,0,'D','備考','注文備考','BAR',0,'TL030101','20261125',"
              "'101112');");

    file.Run("UPDATE TLSP0010 SET PayKeySubNp = 0");
    const auto unsplit = db.OpenRS(BuildLineSql({7, 2, 1}));
    ASSERT_TRUE(unsplit);
    EXPECT_TRUE(BuildInsertSql(*unsplit, 2, "KEY0001", answer, stamp)
                    .startsWith("INSERT INTO TLSP0010 VALUES (7,2,2,'KEY0001',0,'P''O',"));
}

TEST_F(DeliveryLineTest, AnInsertFollowsTheColumnsOfTheFile)
{
    // Columns in an order of their own, and some that only another program knows.
    const QString columns = file.Rows("SELECT group_concat(name) FROM (SELECT name FROM "
                                      "pragma_table_info('TLSP0010') ORDER BY name DESC)");
    file.Run("CREATE TABLE Other AS SELECT " + columns
             + " FROM TLSP0010; DROP TABLE TLSP0010; ALTER TABLE Other RENAME TO TLSP0010;"
               "ALTER TABLE TLSP0010 ADD COLUMN LabelNo TEXT;"
               "ALTER TABLE TLSP0010 ADD COLUMN Weight REAL;"
               "ALTER TABLE TLSP0010 ADD COLUMN Boxes INTEGER;"
               "ALTER TABLE TLSP0010 ADD COLUMN Seal BLOB;"
               "INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, DpoFlg, OdrNo, LabelNo, Weight, "
               "Seal) VALUES (7, 2, 1, 0, 'PO-7', 'L''1|2 ', 0.30000000000000004, x'00FF')");
    const auto source = db.OpenRS(BuildLineSql({7, 2, 1}));
    ASSERT_TRUE(source);
    EXPECT_TRUE(db.DBExecute(
        BuildInsertSql(*source, 2, "", {"20261210", "", "", Decimal::FromText(u"40.5"), "1"}, {})))
        << boxes.TakeTexts()[0].toStdString();
    EXPECT_EQ(file.Rows("SELECT AccNo, AccSubNo, OdrNo, AnsVal, LabelNo, Weight = 0.1 + 0.2, "
                        "Boxes IS NULL, hex(Seal) FROM TLSP0010 WHERE ShpSubNo = 2"),
              "7|2|PO-7|40.5|L'1|2 |1|1|00FF");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(DeliveryLineTest, ShipDateIsTheAnsweredDateLessTheTransportDays)
{
    const auto customer = [&](const char *code, const char *vanCD, int deleted = 0) {
        file.Insert("TLMT0040", {{"CustCD", code}, {"VanCD", vanCD}, {"DpoFlg", deleted}});
    };
    const auto destination
        = [&](const char *company, const char *code, const QVariant &days, int deleted = 0) {
              file.Insert("TLMT0050", {{"CustCoCD", company},
                                       {"PayDstCD", code},
                                       {"PayNeedDays", days},
                                       {"DpoFlg", deleted}});
          };
    customer("C1", "VAN001-REST");
    customer("SHORT", "VAN");
    customer("GONE", "VAN001", 1);
    customer("O'C", "VAN002");
    destination("VAN001", "D3", 3);
    destination("VAN001", "D0", 0);
    destination("VAN001", "DN", QVariant());
    destination("VAN001", "D400", 400);
    destination("VAN001", "DX", 5, 1);
    destination("VAN002", "D'1", 1);
    destination("VAN0", "D3", 9);
    const struct
    {
        const char *what, *answered, *customer, *destination, *shipDate;
    } cases[] = {
        {"as shown", "97/05/28", "C1", "D3", "19970525"},
        {"stripped", "970528", "C1", "D3", "19970525"},
        {"over a month", "26/12/02", "C1", "D3", "20261129"},
        {"over a year", "00/01/02", "C1", "D3", "19991230"},
        {"over a leap day", "24/03/02", "C1", "D3", "20240228"},
        {"no leap day", "26/03/02", "C1", "D3", "20260227"},
        {"leap day of 2000", "00/03/01", "C1", "D3", "20000227"},
        {"more than a year", "26/12/02", "C1", "D400", "20251028"},
        {"no transport time", "26/12/02", "C1", "D0", "20261202"},
        {"transport time unknown", "26/12/02", "C1", "DN", "20261202"},
        {"no destination", "26/12/02", "C1", "D9", "20261202"},
        {"blank destination", "26/12/02", "C1", "", "20261202"},
        {"deleted destination", "26/12/02", "C1", "DX", "20261202"},
        {"deleted customer", "26/12/02", "GONE", "D3", "20261202"},
        {"short VAN code", "26/12/02", "SHORT", "D3", "20261202"},
        {"quotes and blanks", "26/12/02", "O'C  ", "D'1 ", "20261201"},
        {"no such day", "26/02/30", "C1", "D3", "20260230"},
        {"no date", "", "C1", "D3", ""},
    };
    for (const auto &[what, answered, customerCode, destinationCode, shipDate] : cases)
        EXPECT_EQ(ShipDate(db, answered, customerCode, destinationCode), QString(shipDate)) << what;
    EXPECT_TRUE(boxes.Shown().empty());

    file.Run("DROP TABLE TLMT0050");
    EXPECT_EQ(ShipDate(db, "26/12/02", "C1", "D3"), std::nullopt);
    EXPECT_EQ(boxes.TakeTexts().size(), 1u);
}

TEST_F(DeliveryLineTest, ADestinationIsOfTheCustomersCompany)
{
    // One destination code of two companies, one VAN code of two customers.
    for (const auto &[customer, vanCD] :
         {std::pair{"C1", "VAN001A"}, {"C2", "VAN002A"}, {"C3", "VAN001B"}})
        file.Insert("TLMT0040", {{"CustCD", customer}, {"VanCD", vanCD}});
    for (const auto &[company, days] : {std::pair{"VAN001", 1}, {"VAN002", 2}})
        file.Insert("TLMT0050", {{"CustCoCD", company}, {"PayDstCD", "D"}, {"PayNeedDays", days}});
    for (const auto &[customer, shipDate] :
         {std::pair{"C1", "20261201"}, {"C2", "20261130"}, {"C3", "20261201"}, {"C", "20261202"}})
        EXPECT_EQ(ShipDate(db, "26/12/02", customer, "D"), QString(shipDate)) << customer;
}

TEST(PayKeyTest, NextNumberOfTheOrder)
{
    const struct
    {
        const char *what;
        QString key;
        int subNp;
        std::vector<QString> keysOfOrder;
        QString next;
    } cases[] = {
        {"never split", "KEY0001  ", 0, {"KEY0001"}, "KEY0001"},
        {"split before", "KEY0001", 1, {"KEY0001"}, "KEY0002"},
        {"behind the order's last", "KEY0001", 1, {"KEY0001", "KEY0007 ", "KEY0003"}, "KEY0008"},
        {"source above the others", "KEY0009", 2, {"KEY0003"}, "KEY0010"},
        {"no other known", "KEY0009", 2, {}, "KEY0010"},
        {"other stems do not count", "KEY0001", 1, {"KEX0050", "KEY10060", "EY0070"}, "KEY0002"},
        {"behind the last number comes a free one",
         "KEY9999",
         1,
         {"KEY9999", "KEY0000", "KEY0001"},
         "KEY0002"},
        {"carry", "A0999", 1, {"A0999"}, "A1000"},
        {"number alone", "0001", 1, {"0001"}, "0002"},
        {"no number at the end", "KEYABCD", 1, {"KEYABCD"}, "KEY0001"},
        {"number cut short by a letter", "KEY12B4", 1, {"KEY12B4"}, "KEY0013"},
        {"too short to hold one", "123", 1, {"123"}, "123"},
        {"none", "   ", 1, {""}, ""},
    };
    for (const auto &[what, key, subNp, keysOfOrder, next] : cases)
        EXPECT_EQ(NextPayKey(key, subNp, keysOfOrder), next) << what;
}
