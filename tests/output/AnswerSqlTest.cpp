#include "output/AnswerSql.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {

constexpr auto Answerable
    = " ( ( TLMT0040.LinKBN = 1 AND TLSP0010.AnsVal <> 0 ) OR "
      " ( TLMT0040.LinKBN = 2 AND TLSP0010.AnsLimDate <> '' AND TLSP0010.AnsVal <> 0 ) ) AND ";

} // namespace

TEST(AnswerSql, Selection)
{
    QString sql
        = "SELECT  TLSP0010.CustCD ,TLSP0010.CustSecCD ,TLSP0010.OdrNo ,TLSP0010.MfactNo "
          ",TLSP0010.Unit ,TLSP0010.AccVal ,TLSP0010.HinCD ,TLSP0010.AccHinCD ,TLSP0010.LimDate "
          ",TLSP0010.PayNo ,TLSP0010.AnsLimDate ,TLSP0010.AnsVal ,TLSP0010.AnsMark "
          ",TLSP0010.CustSecName ,TLSP0010.AnsLimUmu ,TLSP0010.PayKeyNo ,TLMT0040.CustKBN "
          ",TLEI0010.CockKBN ,TLEI0010.KobaiTanto "
          ",TLMT0040.VanCD ,TLMT0040.NokiInfPath ,TLMT0040.NokiInfKBN ,TLMT0040.HenpVerPath "
          " FROM TLSP0010,TLMT0040  ,TLEI0010 WHERE  TLSP0010.AccNo = 9876543210 AND "
          " TLSP0010.AccNo = TLEI0010.AccNo AND "
          " TLSP0010.CustCD = TLMT0040.CustCD AND  TLSP0010.ShpSts < 3  AND "
          + QString(Answerable)
          + " TLSP0010.DpoFlg = 0 AND  TLEI0010.DpoFlg = 0 AND  TLMT0040.DpoFlg = 0 "
            " ORDER BY  TLSP0010.AccSubNo ASC,TLSP0010.IndVal DESC,TLSP0010.AnsLimDate ASC;";
    EXPECT_EQ(BuildAnswerSelectSql(9876543210, true), sql);
    for (const char *onlyEdi :
         {",TLEI0010.CockKBN ,TLEI0010.KobaiTanto ", " ,TLEI0010 ",
          " TLSP0010.AccNo = TLEI0010.AccNo AND ", " TLEI0010.DpoFlg = 0 AND "})
        sql.remove(onlyEdi);
    EXPECT_EQ(BuildAnswerSelectSql(9876543210, false), sql);
}

TEST(AnswerSql, Marking)
{
    EXPECT_EQ(
        BuildMarkAnsweredSql(123, {"20261124", "093000"}),
        "UPDATE TLSP0010  INNER JOIN TLMT0040 ON  TLSP0010.CustCD = TLMT0040.CustCD  SET "
        " TLSP0010.AnsLimUmu = 3 ,TLSP0010.UpdPGName = 'TL030101',TLSP0010.UpdDate = '20261124'"
        ",TLSP0010.UpdTime = '093000'  WHERE  TLSP0010.AccNo = 123 AND  TLSP0010.ShpSts = 1 AND "
            + QString(Answerable) + " TLSP0010.DpoFlg = 0 AND TLMT0040.DpoFlg = 0 ;");
}
