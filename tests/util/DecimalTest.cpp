#include "util/Decimal.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>
#include <limits>

TEST(Decimal, DoubleHasItsShortestFifteenDigitText)
{
    constexpr std::pair<double, const char *> cases[] = {
        {0.1 + 0.2, "0.3"},
        {-0.0005, "-0.0005"},
        {2.0 / 3, "0.666666666666667"},
        {1234567890123.457, "1234567890123.46"},
        {1e15, "1000000000000000"},
        {0.99999999999999989, "1"},
        {1e-30, "0"},
        {1e18, "0"},
        {std::numeric_limits<double>::quiet_NaN(), "0"},
    };
    for (const auto &[value, text] : cases)
        EXPECT_EQ(Decimal::FromDouble(value).ToText(), text) << value;
}

TEST(Decimal, ThousandthsSurviveTheWayThroughADouble)
{
    for (int thousandths = 0; thousandths < 1000; ++thousandths) {
        const Decimal exact
            = Decimal::FromText(QString("999999999.%1").arg(thousandths, 3, 10, QChar('0')));
        ASSERT_EQ(Decimal::FromDouble(exact.ToDouble()), exact) << thousandths;
    }
}

TEST(Decimal, FromText)
{
    constexpr std::pair<const char *, const char *> cases[] = {
        {"-0", "0"},
        {" 1,234.500 ", "1234.5"},
        {"5.", "5"},
        {"-.5", "-0.5"},
        {"1.2.3", "1.2"},
        {"12A3", "12"},
        {"--5", "0"},
        {"000000000000000000000007", "7"},
        {"0.0000000000000000019", "0.000000000000000001"},
        {"０", "0"},
    };
    for (const auto &[text, result] : cases)
        EXPECT_EQ(Decimal::FromText(QString(text)).ToText(), result) << text;
}

TEST(Decimal, SumsAreExact)
{
    Decimal sum;
    for (int i = 0; i < 1000; ++i)
        sum += Decimal::FromDouble(0.1);
    EXPECT_EQ(sum - Decimal::FromDouble(0.1), Decimal::FromText(u"99.9"));
    EXPECT_EQ(
        (Decimal::FromText(u"999999999999999999") + Decimal::FromText(u"0.000000000000000001"))
            .ToText(),
        "999999999999999999.000000000000000001");
}

TEST(Decimal, ComparesByValue)
{
    const char *ascending[] = {"-10.5", "-10.25", "-1", "0", "0.001", "0.01", "2", "10"};
    for (size_t i = 0; i < std::size(ascending); ++i)
        for (size_t j = 0; j < std::size(ascending); ++j) {
            const Decimal a = Decimal::FromText(QString(ascending[i]));
            const Decimal b = Decimal::FromText(QString(ascending[j]));
            EXPECT_EQ(a <=> b, i <=> j) << ascending[i] << ' ' << ascending[j];
        }
    EXPECT_EQ(Decimal::FromText(u"100.000"), Decimal(100));
}

TEST(Decimal, RoundsHalfAwayFromZeroAndCutsTowardIt)
{
    constexpr struct
    {
        const char *text;
        int decimals;
        const char *rounded;
        const char *truncated;
    } cases[] = {
        {"0.5", 0, "1", "0"},        {"-0.5", 0, "-1", "0"},    {"2.5", 0, "3", "2"},
        {"-2.5", 0, "-3", "-2"},     {"2.49", 0, "2", "2"},     {"1.0005", 3, "1.001", "1"},
        {"-9.9999", 3, "-10", "-9"}, {"1.005", 2, "1.01", "1"}, {"12.25", 3, "12.25", "12"},
    };
    for (const auto &[text, decimals, rounded, truncated] : cases) {
        const Decimal value = Decimal::FromText(QString(text));
        EXPECT_EQ(value.Rounded(decimals).ToText(), rounded) << text;
        EXPECT_EQ(value.Truncated().ToText(), truncated) << text;
    }
}

TEST(Decimal, ToFixed)
{
    constexpr struct
    {
        const char *text;
        int decimals;
        bool useComma;
        const char *result;
    } cases[] = {
        {"0", 3, true, "0.000"},
        {"1234.5", 3, false, "1234.500"},
        {"-123456.7", 1, true, "-123,456.7"},
        {"999999999.9995", 3, true, "1,000,000,000.000"},
        {"-0.0004", 3, true, "0.000"},
    };
    for (const auto &[text, decimals, useComma, result] : cases)
        EXPECT_EQ(Decimal::FromText(QString(text)).ToFixed(decimals, useComma), result) << text;
}
