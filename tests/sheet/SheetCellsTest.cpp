#include "sheet/SheetCells.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(SheetCells, DatesAsPeopleWriteThem)
{
    const std::pair<const char *, const char *> cases[] = {
        {"2026/12/8", "20261208"},
        {"2026/12/08", "20261208"},
        {" 2026-12-08 ", "20261208"},
        {"20261208", "20261208"},
        {"261208", "20261208"},
        {"510101", "19510101"},
        {"２０２６／１２／８", "20261208"},
        {"2026年12月8日", "20261208"},
        {"2026-12-08 00:00:00", "20261208"},
        {"2026-12-08T00:00:00.000", "20261208"},
        {"2026/12/8 0:00", "20261208"},
        {"=\"2026/12/8\"", "20261208"},
        {"2028/2/29", "20280229"},
        {"2026/2/29", nullptr},
        {"12月8日", nullptr},
        {"12/8", nullptr},
        {"12/08/26", nullptr},
        {"26/12/08", nullptr},
        {"2026/12/8 13:00", nullptr},
        {"2026/12-8", nullptr},
        {"2026/12/008", nullptr},
        {"2026/12/", nullptr},
        {"2026//8", nullptr},
        {"2026", nullptr},
        {"2026/", nullptr},
        {"46364", nullptr}, // a spreadsheet's day number might be any number
        {"=DATE(2026,12,8)", nullptr},
        {"未定", nullptr},
    };
    for (const auto &[cell, stored] : cases) {
        const auto date = DateOfCell(PlainCell(QString(cell)));
        EXPECT_EQ(date.value_or("none"), stored ? stored : "none") << cell;
    }
}

TEST(SheetCells, QuantitiesAsPeopleWriteThem)
{
    const std::pair<const char *, const char *> cases[] = {
        {"100", "100"},
        {"1,234", "1234"},
        {"1,234,567.500", "1234567.5"},
        {"１，２３４．５", "1234.5"},
        {" 100 ", "100"},
        {"0100", "100"},
        {"=\"100\"", "100"},
        {"0", "0"},
        {"100.", "100"},
        {"999999999.999", "999999999.999"},
        {"1000000000", nullptr},
        {"0.0005", nullptr},
        {"1,23", nullptr}, // elsewhere that is a decimal
        {"1234,567", nullptr},
        {",123", nullptr},
        {"1,,234", nullptr},
        {".5", nullptr},
        {"-5", nullptr},
        {"1E3", nullptr},
        {"100個", nullptr},
        {"=1+1", nullptr},
        {"", nullptr},
        {"1.2.3", nullptr},
        {"99999999999999999999999999999999", nullptr},
    };
    for (const auto &[cell, text] : cases) {
        const auto quantity = QuantityOfCell(PlainCell(QString(cell)));
        EXPECT_EQ(quantity ? quantity->ToText() : "none", text ? text : "none") << cell;
    }
}

TEST(SheetCells, ATextStaysTheTextItIs)
{
    for (const char *text : {"00123", "=1+1", "-5", "@SUM(A1)", "1-2", "ＡＢ", "say \"2\"",
                             "R8.4.1", "TRUE", "＝1+1", "+81", "\"", "1E5"}) {
        EXPECT_FALSE(IsSafeCell(text)) << text;
        const QString cell = "=\"" + QString(text).replace('"', "\"\"") + '"';
        EXPECT_EQ(PlainCell(cell), PlainCell(QString(text))) << text;
    }
    for (const char *text : {"抵抗器 10=1", "セラミック", "ｺｰﾄﾞ", "*"})
        EXPECT_TRUE(IsSafeCell(text)) << text;
}
