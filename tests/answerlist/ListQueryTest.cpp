#include "answerlist/ListQuery.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {

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
constexpr auto Order
    = "ORDER BY TLSP0010.ACCHINCD,TLSP0010.ODRNO,TLSP0010.MFACTNO,TLSP0010.LIMDATE,"
      "TLSP0010.CUSTCD,TLSP0010.ACCNO,TLSP0010.ACCSUBNO,TLSP0010.ANSLIMDATE,TLSP0010.SHPSUBNO,"
      "TLSP0010.PAYKEYNO;";

/// The statement with these parts for the customer, the section, the other texts and the dates.
QString Sql(const QString &customer, const QString &section = {}, const QString &texts = {},
            const QString &dates = {}, const QString &order = Order)
{
    return Columns + ("TLSP0010.CUSTCD LIKE '" + customer) + section + Kinds + texts + Join + dates
           + Live + order;
}

} // namespace

TEST(ListQueryTest, TextsStandInTheirPlaces)
{
    EXPECT_EQ(BuildListSql({}), Sql("*' "));
    SearchConditions conditions;
    conditions.customerCode = "C1";
    conditions.customerName = "顧客"; // only shown
    conditions.customerSectionCode = "S1";
    conditions.productCode = "P1";
    conditions.productName = "部品";
    conditions.orderNo = "O1";
    conditions.makerNo = "M1";
    conditions.payKeyNo = "K1";
    EXPECT_EQ(BuildListSql(conditions),
              Sql("C1*' ", "AND TLSP0010.CustSecCD LIKE 'S1*' ",
                  "AND TLSP0010.ACCHINCD LIKE 'P1*' AND TLAC0010.AccHinName LIKE '部品*' "
                  "AND TLSP0010.ODRNO LIKE 'O1*' AND TLSP0010.MFACTNO LIKE 'M1*' "
                  "AND TLSP0010.PAYKEYNO LIKE 'K1*' "));
    for (QString SearchConditions::*text :
         {&SearchConditions::customerCode, &SearchConditions::customerSectionCode,
          &SearchConditions::productCode, &SearchConditions::productName,
          &SearchConditions::orderNo, &SearchConditions::makerNo, &SearchConditions::payKeyNo,
          &SearchConditions::fromDate, &SearchConditions::toDate})
        conditions.*text = "  ";
    EXPECT_EQ(BuildListSql(conditions), Sql("*' ")) << "blank texts are no conditions";

    conditions.customerCode = "A'B#";
    conditions.customerSectionCode = "#'";
    conditions.orderNo = " a##b''  "; // blanks before count, behind do not
    EXPECT_EQ(BuildListSql(conditions), Sql("A''B[#]*' ", "AND TLSP0010.CustSecCD LIKE '[#]''*' ",
                                            "AND TLSP0010.ODRNO LIKE ' a[#][#]b''''*' "));
}

TEST(ListQueryTest, AProductNameOfTheMasterIsNoPattern)
{
    SearchConditions conditions;
    conditions.productName = "ﾈｼﾞ'[M6]*?# ";
    conditions.isProductNameLiteral = true;
    EXPECT_EQ(BuildListSql(conditions),
              Sql("*' ", {}, "AND TLAC0010.AccHinName LIKE 'ﾈｼﾞ''[[]M6][*][?][#]*' "));
    conditions.isProductNameLiteral = false;
    EXPECT_EQ(BuildListSql(conditions),
              Sql("*' ", {}, "AND TLAC0010.AccHinName LIKE 'ﾈｼﾞ''[M6]*?[#]*' "));
}

TEST(ListQueryTest, DatesAreThoseOfTheBasis)
{
    const struct
    {
        const char *basis, *from, *to, *sql;
    } cases[] = {
        {"SHPDATE", "20260101", "20261231",
         " And TLSP0010.ShpDate >= '20260101'    And TLSP0010.ShpDate <= '20261231' "},
        {"LIMDATE", "20260101  ", "", " And TLSP0010.LimDate >= '20260101' "},
        {"ACCDATE", "", "20261231", "   And TLAC0010.AccDate <= '20261231' "},
        {"ACCDATE", "2026'", "", " And TLAC0010.AccDate >= '2026'' "},
        {"UPDDATE", "20260101", "20261231", ""},
        {"", "20260101", "", ""},
    };
    for (const auto &[basis, from, to, sql] : cases) {
        SearchConditions conditions;
        conditions.dateBasis = basis;
        conditions.fromDate = from;
        conditions.toDate = to;
        EXPECT_EQ(BuildListSql(conditions), Sql("*' ", {}, {}, sql)) << basis;
    }
}

TEST(ListQueryTest, FourSortKeysGoBeforeTheFixedOnes)
{
    SearchConditions conditions;
    conditions.sortKeys = {"SHPDATE", "CUSTSECCD", "LIMDATE", "ODRNO", "MFACTNO", "ACCHINCD"};
    const QString order = "ORDER BY TLSP0010.SHPDATE,TLSP0010.CUSTSECCD,TLSP0010.LIMDATE,"
                          "TLSP0010.ODRNO,TLSP0010.CUSTCD,TLSP0010.ACCNO,TLSP0010.ACCSUBNO,"
                          "TLSP0010.ANSLIMDATE,TLSP0010.SHPSUBNO,TLSP0010.PAYKEYNO;";
    EXPECT_EQ(BuildListSql(conditions), Sql("*' ", {}, {}, {}, order));
    conditions.sortKeys[4] = "X";
    conditions.sortKeys[5].clear();
    EXPECT_EQ(BuildListSql(conditions), Sql("*' ", {}, {}, {}, order));
}
