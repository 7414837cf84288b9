#include "util/Decimal.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>
#include <limits>

TEST(Decimal, DoubleHasItsShortestFifteenDigitText)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr std::pair<double, const char *> cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {0.1 + 0.2, "0.3"},
        {-0.0005, "-0.0005"},
        {2.0 / 3, "0.666666666666667"},
        {999999999.999, "999999999.999"},
        {123456789012345, "123456789012345"},
        {1234567890123.457, "1234567890123.46"},
        {1e15, "1000000000000000"},
        {0.99999999999999989, "1"},
        {1e-7, "0.0000001"},
        {1e-30, "0"},
        {1e18, "0"},
        {infinity, "0"},
        {std::numeric_limits<double>::quiet_NaN(), "0"},
    };
    for (const auto &[value, text] : cases)
        EXPECT_EQ(Decimal::FromDouble(value).ToText(), text) << value;
}

TEST(Decimal, ThousandthsSurviveTheWayThroughADouble)
{
    for (const qint64 whole : {0, 123'456'789, 999'999'999})
        for (int thousandths = 0; thousandths < 1000; ++thousandths) {
            const Decimal exact = Decimal::FromText(
                QString("%1.%2").arg(whole).arg(thousandths, 3, 10, QChar('0')));
            ASSERT_EQ(Decimal::FromDouble(exact.ToDouble()), exact) << thousandths;
        }
}

TEST(Decimal, FromText)
{
    constexpr std::pair<const char *, const char *> cases[] = {
        {"", "0"},
        {"-0", "0"},
        {"12.50", "12.5"},
        {"1,234.500", "1234.5"},
        {" 70.000 ", "70"},
        {"5.", "5"},
        {"-.5", "-0.5"},
        {"1.2.3", "1.2"},
        {"12A3", "12"},
        {"A12", "0"},
        {"--5", "0"},
        {"000000000000000000000007", "7"},
        {"999999999999999999", "999999999999999999"},
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
    EXPECT_EQ(sum, Decimal(100));
    for (int i = 0; i < 1000; ++i)
        sum = sum - Decimal::FromDouble(0.1);
    EXPECT_TRUE(sum.IsZero());

    const auto text = [](const char *a, const char *b) {
        return (Decimal::FromText(QString(a)) + Decimal::FromText(QString(b))).ToText();
    };
    EXPECT_EQ(text("999999999.999", "0.001"), "1000000000");
    EXPECT_EQ(text("999999999999999999", "0.000000000000000001"),
              "999999999999999999.000000000000000001");
}

TEST(Decimal, ComparesByValue)
{
    const char *ascending[] = {"-10.5", "-10.25", "-1", "0", "0.001", "0.01", "2", "10", "10.001"};
    for (size_t i = 0; i < std::size(ascending); ++i)
        for (size_t j = 0; j < std::size(ascending); ++j) {
            const Decimal a = Decimal::FromText(QString(ascending[i]));
            const Decimal b = Decimal::FromText(QString(ascending[j]));
            EXPECT_EQ(a < b, i < j) << ascending[i] << ' ' << ascending[j];
            EXPECT_EQ(a == b, i == j) << ascending[i] << ' ' << ascending[j];
        }
    EXPECT_EQ(Decimal::FromText(u"100.000"), Decimal(100));
    EXPECT_TRUE(Decimal::FromText(u"-0.5").IsNegative());
    EXPECT_FALSE(Decimal::FromText(u"-0").IsNegative());
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
        {"0.5", 0, "1", "0"},        {"-0.5", 0, "-1", "0"},      {"1.5", 0, "2", "1"},
        {"2.5", 0, "3", "2"},        {"-2.5", 0, "-3", "-2"},     {"2.49999", 0, "2", "2"},
        {"-2.49999", 0, "-2", "-2"}, {"1.0005", 3, "1.001", "1"}, {"1.00049", 3, "1", "1"},
        {"0.9995", 3, "1", "0"},     {"-9.9999", 3, "-10", "-9"}, {"12.25", 3, "12.25", "12"},
        {"1.005", 2, "1.01", "1"},   {"7", 0, "7", "7"},
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
        {"1234567.8905", 3, true, "1,234,567.891"},
        {"999999999.9995", 3, true, "1,000,000,000.000"},
        {"-0.0004", 3, true, "0.000"},
        {"0.5", 0, false, "1"},
    };
    for (const auto &[text, decimals, useComma, result] : cases)
        EXPECT_EQ(Decimal::FromText(QString(text)).ToFixed(decimals, useComma), result) << text;
    EXPECT_EQ(FormatQuantity(Decimal::FromText(u"1234.5")), "1,234.500");
}
