#include "util/VbText.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(VbText, OnlyTheHalfWidthBlankIsTrimmed)
{
    constexpr const char *cases[][3] = {
        {"  A B  ", "A B", "  A B"},
        {"   ", "", ""},
        {" 　A　 ", "　A　", " 　A　"},
        {"\tA\r\n", "\tA\r\n", "\tA\r\n"},
    };
    for (const auto &[text, trimmed, rightTrimmed] : cases) {
        EXPECT_EQ(Trim(QString(text)), trimmed);
        EXPECT_EQ(RTrim(QString(text)), rightTrimmed);
    }
}

TEST(VbText, NumbersAtTheStart)
{
    constexpr struct
    {
        const char *text;
        double value;
        int rounded;
    } cases[] = {
        {"  12AB", 12, 12},
        {"08.50", 8.5, 8},
        {"9.5", 9.5, 10},
        {"-3.7x", -3.7, -4},
        {"5.", 5, 5},
        {"AB12", 0, 0},
        {".", 0, 0},
        {"1.2.3", 1.2, 1},
        {"32767", 32767, 32767},
        {"32768", 32768, 0},
        {"-32768", -32768, -32768},
        {"１２", 0, 0},
    };
    for (const auto &[text, value, rounded] : cases) {
        EXPECT_DOUBLE_EQ(Val(QString(text)), value) << text;
        EXPECT_EQ(IntVal(QString(text)), rounded) << text;
    }
}
