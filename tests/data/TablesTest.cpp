#include "data/Tables.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(Tables, ValuesAsTheirColumnTakesThem)
{
    constexpr struct
    {
        const char *column;
        const char *value;
        const char *literal; ///< null: refused
    } cases[] = {
        {"Biko", "O'NEIL  ", "'O''NEIL'"},
        {"AnsVal", " -00.500 ", "-0.5"},
        {"AnsVal", "+.25", "0.25"},
        {"AccNo", "  ", "0"},
        {"AccNo", "000123456789012345678", "123456789012345678"},
        {"Tan", "1234567890123456789", nullptr}, // more digits than are kept exactly
        {"Tan", "0.12345678901234567800", "0.123456789012345678"},
        {"Tan", "(select max(AccNo) from TLSP0010)", nullptr},
        {"Tan", "1,234", nullptr},
        {"Tan", "１２", nullptr},
        {"Tan", "inf", nullptr},
        {"Tan", "1e5", nullptr},
        {"Tan", ".", nullptr},
        {"Tan", "1\n", nullptr},
    };
    for (const auto &[name, value, literal] : cases) {
        const ColumnDefinition *column
            = FindColumn(*FindTable("TLSP0010"), QString(name).toUpper());
        ASSERT_NE(column, nullptr) << name;
        EXPECT_EQ(SqlLiteralOf(*column, value).value_or("refused"), literal ? literal : "refused")
            << value;
    }
}
