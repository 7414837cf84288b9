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
    file.Run("INSERT INTO TLSP0010 VALUES (7,2,1,'KEY0001',4,'P''O  ','C1',NULL,'部門','D1',"
             "'20261201','0930','P1','H1','A1','M1','EA',0.1,1000000,100,60,5,'20261202','2',3,3,"
             "'20261130','20261202',15,NULL,'D','備考','注文備考','BAR',0,'TL010101','20260101',"
             "'000000')");
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
    destination("VAN002", "D3", 2); // one code of two companies
    destination("VAN0", "D3", 9);
    const struct
    {
        const char *what, *answered, *customer, *destination, *shipDate;
    } cases[] = {
        {"of another company", "26/12/02", "O'C", "D3", "20261130"},
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

TEST(PayKeyTest, NextNumberOfTheOrder)
{
    const struct
    {
        QString key;
        int subNp;
        std::vector<QString> keysOfOrder;
        QString next;
    } cases[] = {{"KEY0001  ", 0, {"KEY0001"}, "KEY0001"}, // never split
                 {"KEY0001", 1, {"KEY0001"}, "KEY0002"},
                 {"KEY0001", 1, {"KEY0001", "KEY0007 ", "KEY0003"}, "KEY0008"},
                 {"KEY0009", 2, {"KEY0003"}, "KEY0010"},
                 {"KEY0009", 2, {}, "KEY0010"},
                 {"KEY0001", 1, {"KEX0050", "KEY10060", "EY0070"}, "KEY0002"}, // other stems
                 {"KEY9999", 1, {"KEY9999", "KEY0000", "KEY0001"}, "KEY0002"}, // a free one
                 {"A0999", 1, {"A0999"}, "A1000"},
                 {"0001", 1, {"0001"}, "0002"},
                 {"KEYABCD", 1, {"KEYABCD"}, "KEY0001"},
                 {"KEY12B4", 1, {"KEY12B4"}, "KEY0013"}, // the number ends at the letter
                 {"123", 1, {"123"}, "123"},             // too short to hold one
                 {"   ", 1, {""}, ""}};
    for (const auto &[key, subNp, keysOfOrder, next] : cases)
        EXPECT_EQ(NextPayKey(key, subNp, keysOfOrder), next);
}
