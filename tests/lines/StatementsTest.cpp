#include "lines/LinesFixture.h"

#include "data/dao/Dialect.h"
#include "lines/LineSplit.h"
#include "lines/LineSql.h"
#include "support/StatementLog.h"

namespace {

using StatementsTest = LinesFixture;

constexpr auto Columns
    = "SELECT  TLSP0010.AccNo,TLSP0010.ShpSubNo,TLSP0010.AccSubNo,TLSP0010.AnsMark,TLSP0010.OdrNo"
      ",TLSP0010.AccVal,TLSP0010.LimDate,TLSP0010.PayNo,TLSP0010.IndVal,TLSP0010.AnsLimDate"
      ",TLSP0010.AnsVal,TLSP0010.ShpSts,TLSP0010.ShpVal,TLSP0010.AnsLimUmu,TLSP0010.DenKBN"
      ",TLAC0010.EDIKBN,TLAC0010.ZanVal,TLSP0010.ContractKBN,TLAC0010.AccHinCD as HinCD "
      ",TLMT0040.LinKBN,TLMT0040.NokiInfPath,TLMT0040.NokiInfKBN,TLAC0010.AccHinName"
      ",TLAC0010.F019,TLSP0010.CustSecCD FROM TLSP0010,TLAC0010,TLMT0040  WHERE ";
constexpr auto Kinds = "AND (TLSP0010.DenKBN = 2 OR TLSP0010.DenKBN = 15) ";
constexpr auto Join = "AND TLAC0010.ACCNO = TLSP0010.ACCNO ";
constexpr auto Live
    = " AND TLSP0010.AccNo = TLAC0010.AccNo  AND TLAC0010.ShpSts <> 3 AND TLSP0010.ShpSts <> 4 "
      "AND TLSP0010.CustCD = TLMT0040.CustCD AND TLSP0010.DpoFlg = 0 AND TLAC0010.DpoFlg = 0 "
      "AND TLMT0040.DpoFlg = 0 ";
constexpr auto OrderedBy
    = "ORDER BY TLSP0010.ACCHINCD,TLSP0010.ODRNO,TLSP0010.MFACTNO,TLSP0010.LIMDATE,"
      "TLSP0010.CUSTCD,TLSP0010.ACCNO,TLSP0010.ACCSUBNO,TLSP0010.ANSLIMDATE,TLSP0010.SHPSUBNO,"
      "TLSP0010.PAYKEYNO;";

/// The list's statement with these parts for the customer, the section, the other texts and the
/// dates.
QString ListSql(const QString &customer, const QString &section = {}, const QString &texts = {},
                const QString &dates = {}, const QString &order = OrderedBy)
{
    return Columns + ("TLSP0010.CUSTCD LIKE '" + customer) + section + Kinds + texts + Join + dates
           + Live + order;
}

QString Search(std::initializer_list<std::pair<QString SearchConditions::*, const char *>> texts)
{
    SearchConditions conditions;
    for (const auto &[text, value] : texts)
        conditions.*text = value;
    return BuildListSql(conditions);
}

} // namespace

TEST_F(StatementsTest, Golden)
{
    using S = SearchConditions;
    SearchConditions sorted;
    sorted.sortKeys = {"SHPDATE", "CUSTSECCD", "LIMDATE", "ODRNO", "MFACTNO", ""};
    const LineKey key{123456789012, 2, 3};
    const WriteStamp stamp{"20261125", "101112"};
    file.Run("INSERT INTO TLSP0010 VALUES (7,2,1,'KEY0001',4,'P''O  ','C1',NULL,'部門','D1',"
             "'20261201','0930','P1','H1','A1','M1','EA',0.1,1000000,100,60,5,'20261202','2',3,3,"
             "'20261130','20261202',15,NULL,'D','備考','注文備考','BAR',0,'TL010101','20260101',"
             "'000000')");
    const auto source = state.db.OpenRS(BuildLineSql({7, 2, 1}));
    ASSERT_TRUE(source);
    const struct
    {
        const char *what;
        QString built, expected;
    } cases[] = {
        {"no conditions", Search({}), ListSql("*' ")},
        {"every text and both dates",
         Search({{&S::customerCode, "C1"},
                 {&S::customerSectionCode, "S1"},
                 {&S::productCode, "P1"},
                 {&S::productName, "部品"},
                 {&S::orderNo, "O1"},
                 {&S::makerNo, "M1"},
                 {&S::payKeyNo, "K1"},
                 {&S::fromDate, "20260101"},
                 {&S::toDate, "20261231"}}),
         ListSql("C1*' ", "AND TLSP0010.CustSecCD LIKE 'S1*' ",
                 "AND TLSP0010.ACCHINCD LIKE 'P1*' AND TLAC0010.AccHinName LIKE '部品*' "
                 "AND TLSP0010.ODRNO LIKE 'O1*' AND TLSP0010.MFACTNO LIKE 'M1*' "
                 "AND TLSP0010.PAYKEYNO LIKE 'K1*' ",
                 " And TLSP0010.ShpDate >= '20260101'    And TLSP0010.ShpDate <= '20261231' ")},
        {"blanks alone, and behind",
         Search({{&S::customerCode, "  "},
                 {&S::customerSectionCode, "  "},
                 {&S::productName, "  "},
                 {&S::dateBasis, "LIMDATE"},
                 {&S::fromDate, "20260101  "},
                 {&S::toDate, "  "}}),
         ListSql("*' ", {}, {}, " And TLSP0010.LimDate >= '20260101' ")},
        {"quotes, number signs, blanks before",
         Search({{&S::customerCode, "A'B#"},
                 {&S::orderNo, " a##b''  "},
                 {&S::dateBasis, "ACCDATE"},
                 {&S::toDate, "20261231"}}),
         ListSql("A''B[#]*' ", {}, "AND TLSP0010.ODRNO LIKE ' a[#][#]b''''*' ",
                 "   And TLAC0010.AccDate <= '20261231' ")},
        {"another basis", Search({{&S::dateBasis, "UPDDATE"}, {&S::fromDate, "20260101"}}),
         ListSql("*' ")},
        {"four sort keys", BuildListSql(sorted),
         ListSql("*' ", {}, {}, {},
                 "ORDER BY TLSP0010.SHPDATE,TLSP0010.CUSTSECCD,TLSP0010.LIMDATE,TLSP0010.ODRNO,"
                 "TLSP0010.CUSTCD,TLSP0010.ACCNO,TLSP0010.ACCSUBNO,TLSP0010.ANSLIMDATE,"
                 "TLSP0010.SHPSUBNO,TLSP0010.PAYKEYNO;")},
        {"line", BuildLineSql(key),
         "SELECT * FROM TLSP0010 WHERE ACCNO = 123456789012 AND ACCSUBNO = 2 AND SHPSUBNO = 3 AND "
         "DPOFLG = 0 ;"},
        {"update",
         BuildUpdateSql(key, {"20261202", "2026'", "  ", Decimal::FromText(u"1234.50"), "2"},
                        stamp),
         "UPDATE TLSP0010 SET AnsLimDate = '20261202',ShpDate = '2026''',ArvExpDate = '',"
         "AnsVal = 1234.5,AnsMark = '2',UpdPGName = 'TL030101',UpdDate = '20261125',"
         "UpdTime = '101112' WHERE ACCNO = 123456789012 AND AccSubNo = 2 AND ShpSubNo = 3 AND "
         "DPOFLG = 0;"},
        {"insert",
         *BuildInsertSql(*source, {9, "KEY0005", 5},
                         {"20261210", "20261207", "20261210", Decimal::FromText(u"40.5"), "1"},
                         stamp),
         "INSERT INTO TLSP0010 VALUES (7,2,9,'KEY0005',5,'P''O','C1','','部門','D1',"
         "'20261201','0930','P1','H1','A1','M1','EA',0.1,1000000,0,40.5,0,'20261210','1',0,1,"
         "'20261207','20261210',15,0,'D','備考','注文備考','BAR',0,'TL030101','20261125',"
         "'101112');"},
    };
    for (const auto &[what, built, expected] : cases)
        EXPECT_EQ(built, expected) << what;
}

TEST_F(StatementsTest, GoldenAsTheDatabaseGetsThem)
{
    AddOrder(1);
    AddLine(1, 2, 3, "IndVal = 0");
    AddLine(1, 2, 4);
    Load();
    state.db.CloseDB();
    StatementLog log;
    file.Open(state.db);
    log.Take();
    EXPECT_EQ(ShipDate(state.db, "20260601", "O'C ", "D1 "), "20260601");
    EXPECT_EQ(log.Take(), QStringList(ToSqlite("SELECT PAYNEEDDAYS FROM TLMT0040,TLMT0050 WHERE "
                                               "TLMT0040.CUSTCD = 'O''C' AND "
                                               "TLMT0050.CUSTCOCD = LEFT$(TLMT0040.VANCD,6) AND "
                                               "TLMT0050.PAYDSTCD = 'D1' AND "
                                               "TLMT0040.DPOFLG = 0 AND TLMT0050.DPOFLG = 0;")));
    boxes.Press(BoxButton::Yes);
    EXPECT_TRUE(DeleteLine(state.db, list.At(1)));
    const QStringList deletion
        = {"BEGIN IMMEDIATE",
           ToSqlite("Select * From TLSP0010 WHERE ACCNO = 1 AND AccSubNo = 2 AND ShpSts = 1 AND "
                    "DpoFlg = 0 "),
           ToSqlite("DELETE FROM TLSP0010 WHERE ACCNO = 1 AND AccSubNo = 2 AND ShpSubNo = 3;"),
           "COMMIT"};
    EXPECT_EQ(log.Take(), deletion);
}

TEST_F(StatementsTest, AnInsertFollowsTheColumnsOfTheFile)
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
    const auto source = state.db.OpenRS(BuildLineSql({7, 2, 1}));
    ASSERT_TRUE(source);
    EXPECT_TRUE(state.db.DBExecute(*BuildInsertSql(
        *source, {2, "", 1}, {"20261210", "", "", Decimal::FromText(u"40.5"), "1"}, {})));
    EXPECT_EQ(file.Rows("SELECT AccNo, AccSubNo, OdrNo, AnsVal, LabelNo, Weight = 0.1 + 0.2, "
                        "Boxes IS NULL, hex(Seal) FROM TLSP0010 WHERE ShpSubNo = 2"),
              "7|2|PO-7|40.5|L'1|2 |1|1|00FF");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(StatementsTest, ShipDateIsTheAnsweredDateLessTheTransportDays)
{
    // The customer C1 is of the company VAN001, whose destination D1 is three days away.
    file.Run("INSERT INTO TLMT0040 (CustCD, VanCD, DpoFlg) VALUES ('GONE', 'VAN001', 1), ('O''C', "
             "'VAN002-REST', 0)");
    file.Run("INSERT INTO TLMT0050 (CustCoCD, PayDstCD, PayNeedDays, DpoFlg) VALUES "
             "('VAN001', 'DN', NULL, 0), ('VAN001', 'D400', 400, 0), "
             "('VAN001', 'DH', 1e9, 0), ('VAN001', 'DX', 5, 1), "
             "('VAN002', 'D''1', 1, 0), ('VAN002', 'D1', 2, 0), ('VAN0', 'D1', 9, 0)");
    const struct
    {
        const char *what, *answered, *customer, *destination, *shipDate;
    } cases[] = {
        {"three days", "19970528", "C1", "D1", "19970525"},
        {"one code of two companies", "20261202", "O'C", "D1", "20261130"},
        {"over a leap day", "20240302", "C1", "D1", "20240228"},
        {"more than a year", "20261202", "C1", "D400", "20251028"},
        {"more days than the calendar has", "20261202", "C1", "DH", "20261202"},
        {"transport time unknown", "20261202", "C1", "DN", "20261202"},
        {"no destination", "20261202", "C1", "", "20261202"},
        {"deleted destination", "20261202", "C1", "DX", "20261202"},
        {"deleted customer", "20261202", "GONE", "D1", "20261202"},
        {"quotes and blanks", "20261202", "O'C  ", "D'1 ", "20261201"},
        {"no such day", "20260230", "C1", "D1", "20260230"},
        {"no date", "", "C1", "D1", ""},
    };
    for (const auto &[what, answered, customer, destination, shipDate] : cases)
        EXPECT_EQ(ShipDate(state.db, answered, customer, destination), QString(shipDate)) << what;
    EXPECT_TRUE(boxes.Shown().empty());

    file.Run("DROP TABLE TLMT0050");
    EXPECT_EQ(ShipDate(state.db, "20261202", "C1", "D1"), std::nullopt);
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
                 {"KEY0001", 1, {"KEY0001", "KEY0007 ", "KEY0003"}, "KEY0008"},
                 {"KEY0009", 2, {}, "KEY0010"},
                 {"KEY0001", 1, {"KEX0050", "KEY10060", "EY0070"}, "KEY0002"}, // other stems
                 {"KEY9999", 1, {"KEY9999", "KEY0000", "KEY0001"}, "KEY0002"}, // a free one
                 {"KEY12B4", 1, {"KEY12B4"}, "KEY0013"}, // the number ends at the letter
                 {"123", 1, {"123"}, "123"},             // too short to hold one
                 {"   ", 1, {""}, ""}};
    for (const auto &[key, subNp, keysOfOrder, next] : cases)
        EXPECT_EQ(NextPayKey(key, subNp, keysOfOrder), next);
}
