#include "util/bValue.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(bValue, FormatBySpec)
{
    constexpr int Padded = 0;
    constexpr int Natural = 1;
    constexpr struct
    {
        const char *value;
        const char *spec;
        int mode;
        bool useComma;
        const char *result;
    } cases[] = {
        {"1234", "9.3", Natural, true, "1,234    "},
        {"-0.9999", "9.3", Natural, true, "0.999"},
        {"-1234.5", "9.3", Natural, true, "-1,234.5  "},
        {"1234.5678", "9.3", Padded, true, "      1,234.567"},
        {"1234.5", "9.3", Padded, false, "     1234.5  "},
        {"1234567890", "9.3", Padded, true, "234,567,890"},
        {"1234", "10.3", Padded, true, "        1,234"},
        {"5.75", "2.0", Padded, true, " 5"},
        {"1234.50", "9.", Padded, true, "1234.5"},
    };
    for (const auto &[value, spec, mode, useComma, result] : cases)
        EXPECT_EQ(FormatBySpec(Decimal::FromText(QString(value)), spec, mode, useComma), result)
            << value << ' ' << spec << ' ' << mode;
}

TEST(bValue, IsNumberInSpec)
{
    constexpr struct
    {
        const char *text;
        const char *spec;
        bool fits;
    } cases[] = {
        {"123456789.123", "9.3", true},
        {"1234567890", "9.3", false},
        {"1.2345", "9.3", false},
        {"", "9.3", true},
        {".5", "9.3", false},
        {"5.", "9.3", false},
        {"-5", "9.3", false},
        {"5 ", "9.3", false},
        {"５", "9.3", false},
        {"1.2.3", "9.3", true}, // a second point is let through, and counts as a decimal
        {"1.2.34", "9.3", false},
        {"1.5", "2.0", false},
        {"5", "9.", false},
    };
    for (const auto &[text, spec, fits] : cases)
        EXPECT_EQ(IsNumberInSpec(text, spec), fits) << '"' << text << "\" " << spec;
}
