#include "data/Tables.h"

#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

// The split of a line inserts every column in this order without naming them.
TEST(Tables, ColumnsOfTheDeliveryLines)
{
    QStringList columns;
    for (const ColumnDefinition &column : FindTable("tlsp0010")->columns)
        columns += column.name + QString(column.isKey ? "*" : "")
                   + (column.IsText() ? QString::number(column.width) : QString());
    EXPECT_EQ(columns.join(' '),
              "AccNo* AccSubNo* ShpSubNo* PayKeyNo23 PayKeySubNp OdrNo23 CustCD12 CustSecCD8 "
              "CustSecName20 PayDstCD8 LimDate8 LimTime4 PayNo8 HinCD25 AccHinCD25 MfactNo19 Unit3 "
              "Tan AccVal IndVal AnsVal ShpVal AnsLimDate8 AnsMark1 AnsLimUmu ShpSts ShpDate8 "
              "ArvExpDate8 DenKBN ShpKBN ContractKBN1 Biko30 OdrBiko50 OdrBarCD23 DpoFlg "
              "UpdPGName8 UpdDate8 UpdTime6");
    EXPECT_EQ(FindTable("TLSP9999"), nullptr);
}

TEST(Tables, TextsCompareWithoutCase)
{
    TestDatabase database;
    database.Insert("TLMT0040", {{"CustCD", "abc"}});
    EXPECT_EQ(database.Rows("SELECT CustCD FROM TLMT0040 WHERE CustCD = 'ABC'"), "abc");
}
