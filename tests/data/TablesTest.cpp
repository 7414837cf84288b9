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

TEST(Tables, ValuesAsTheirColumnTakesThem)
{
    constexpr struct
    {
        const char *column;
        const char *value;
        const char *literal; ///< null: refused
    } cases[] = {
        {"Biko", "O'NEIL  ", "'O''NEIL'"},
        {"LimDate", "", "''"},
        {"Tan", "70", "70"},
        {"AnsVal", " -00.500 ", "-0.5"},
        {"AnsVal", "+.25", "0.25"},
        {"ShpVal", "5.", "5"},
        {"AccNo", "  ", "0"},
        {"AccNo", "-0", "0"},
        {"AccNo", "000123456789012345678", "123456789012345678"},
        {"Tan", "1234567890123456789", nullptr}, // more digits than are kept exactly
        {"Tan", "0.1234567890123456789", nullptr},
        {"Tan", "0.12345678901234567800", "0.123456789012345678"},
        {"Tan", "(select max(AccNo) from TLSP0010)", nullptr},
        {"Tan", "1 + 1", nullptr},
        {"Tan", "1,234", nullptr},
        {"Tan", "12個", nullptr},
        {"Tan", "１２", nullptr},
        {"Tan", "NULL", nullptr},
        {"Tan", "inf", nullptr},
        {"Tan", "0x10", nullptr},
        {"Tan", "1e5", nullptr},
        {"Tan", ".", nullptr},
        {"Tan", "-", nullptr},
        {"Tan", "1\n", nullptr},
        {"Tan", "'1'", nullptr},
    };
    for (const auto &[name, value, literal] : cases) {
        const ColumnDefinition *column
            = FindColumn(*FindTable("TLSP0010"), QString(name).toUpper());
        ASSERT_NE(column, nullptr) << name;
        EXPECT_EQ(SqlLiteralOf(*column, value).value_or("refused"), literal ? literal : "refused")
            << value;
    }
    EXPECT_EQ(FindColumn(*FindTable("TLSP0010"), "Missing"), nullptr);
}

TEST(Tables, TextsCompareWithoutCase)
{
    TestDatabase database;
    database.Insert("TLMT0040", {{"CustCD", "abc"}});
    EXPECT_EQ(database.Rows("SELECT CustCD FROM TLMT0040 WHERE CustCD = 'ABC'"), "abc");
}
