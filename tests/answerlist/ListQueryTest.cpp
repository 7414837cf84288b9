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

using Conditions = SearchConditions;

Conditions Of(std::initializer_list<std::pair<QString Conditions::*, const char *>> values)
{
    Conditions conditions;
    for (const auto &[member, text] : values)
        conditions.*member = text;
    return conditions;
}

} // namespace

TEST(ListQueryTest, ConditionsStandInTheirPlaces)
{
    const struct
    {
        const char *what;
        SearchConditions conditions;
        QString sql;
    } cases[] = {
        {"none", Of({}), Sql("*' ")},
        {"every text",
         Of({{&Conditions::customerCode, "C1"},
             {&Conditions::customerSectionCode, "S1"},
             {&Conditions::productCode, "P1"},
             {&Conditions::productName, "部品"},
             {&Conditions::orderNo, "O1"},
             {&Conditions::makerNo, "M1"},
             {&Conditions::payKeyNo, "K1"}}),
         Sql("C1*' ", "AND TLSP0010.CustSecCD LIKE 'S1*' ",
             "AND TLSP0010.ACCHINCD LIKE 'P1*' AND TLAC0010.AccHinName LIKE '部品*' "
             "AND TLSP0010.ODRNO LIKE 'O1*' AND TLSP0010.MFACTNO LIKE 'M1*' "
             "AND TLSP0010.PAYKEYNO LIKE 'K1*' ")},
        {"quote and number sign",
         Of({{&Conditions::customerCode, "A'B#"},
             {&Conditions::customerSectionCode, "#'"},
             {&Conditions::orderNo, "a##b''"}}),
         Sql("A''B[#]*' ", "AND TLSP0010.CustSecCD LIKE '[#]''*' ",
             "AND TLSP0010.ODRNO LIKE 'a[#][#]b''''*' ")},
        {"blanks before count, behind do not",
         Of({{&Conditions::customerCode, " C "}, {&Conditions::productName, " N  "}}),
         Sql(" C*' ", {}, "AND TLAC0010.AccHinName LIKE ' N*' ")},
        {"blank texts are no conditions",
         Of({{&Conditions::customerCode, "   "},
             {&Conditions::customerSectionCode, "  "},
             {&Conditions::productCode, " "},
             {&Conditions::productName, " "},
             {&Conditions::orderNo, " "},
             {&Conditions::makerNo, " "},
             {&Conditions::payKeyNo, " "},
             {&Conditions::fromDate, "        "},
             {&Conditions::toDate, " "}}),
         Sql("*' ")},
        {"the customer's name is only shown", Of({{&Conditions::customerName, "顧客"}}),
         Sql("*' ")},
        {"ship date",
         Of({{&Conditions::dateBasis, "SHPDATE"},
             {&Conditions::fromDate, "20260101"},
             {&Conditions::toDate, "20261231"}}),
         Sql("*' ", {}, {},
             " And TLSP0010.ShpDate >= '20260101'    And TLSP0010.ShpDate <= '20261231' ")},
        {"specified date from",
         Of({{&Conditions::dateBasis, "LIMDATE"}, {&Conditions::fromDate, "20260101  "}}),
         Sql("*' ", {}, {}, " And TLSP0010.LimDate >= '20260101' ")},
        {"order date to",
         Of({{&Conditions::dateBasis, "ACCDATE"}, {&Conditions::toDate, "20261231"}}),
         Sql("*' ", {}, {}, "   And TLAC0010.AccDate <= '20261231' ")},
        {"order date both",
         Of({{&Conditions::dateBasis, "ACCDATE"},
             {&Conditions::fromDate, "2026'"},
             {&Conditions::toDate, "20261231"}}),
         Sql("*' ", {}, {},
             " And TLAC0010.AccDate >= '2026''    And TLAC0010.AccDate <= '20261231' ")},
        {"unknown basis",
         Of({{&Conditions::dateBasis, "UPDDATE"},
             {&Conditions::fromDate, "20260101"},
             {&Conditions::toDate, "20261231"}}),
         Sql("*' ")},
        {"no basis", Of({{&Conditions::dateBasis, ""}, {&Conditions::fromDate, "20260101"}}),
         Sql("*' ")},
    };
    for (const auto &[what, conditions, sql] : cases)
        EXPECT_EQ(BuildListSql(conditions), sql) << what;
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
