#include "lines/LinesFixture.h"

#include "lines/LineSql.h"

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
