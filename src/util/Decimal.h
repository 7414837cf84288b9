#pragma once

#include <QString>
#include <compare>

/// An exact decimal number, as quantities and prices are: digits and a count of decimals, no binary
/// fractions. Holds about 37 digits, at most 18 of them decimals; further decimals are cut.
class Decimal
{
public:
    Decimal() = default;
    Decimal(qint64 whole)
        : m_digits(whole)
    {
    }

    /// The decimal that the shortest text of the number with at most 15 digits shows; 0 for a
    /// number that is not finite or has more than 18 integer digits.
    static Decimal FromDouble(double value);

    /// Parses an optional sign, digits, and a point with digits; thousands separators "," and
    /// blanks are passed over, reading stops at any other character. 0 when there are no digits.
    static Decimal FromText(QStringView text);

    bool IsZero() const { return m_digits == 0; }
    bool IsNegative() const { return m_digits < 0; }
    double ToDouble() const;

    /// Plain digits with "." and no trailing zeros, thousands separators or exponent: "-12.5",
    /// "0.25".
    QString ToText() const;

    Decimal Truncated() const;           ///< the integer part, cut toward zero
    Decimal Rounded(int decimals) const; ///< half away from zero

    /// Rounded to `decimals` places and written with exactly that many: "1,234.500" or "1234.500".
    QString ToFixed(int decimals, bool useComma) const;

    Decimal operator-() const;
    friend Decimal operator+(const Decimal &a, const Decimal &b);
    friend Decimal operator-(const Decimal &a, const Decimal &b) { return a + -b; }
    Decimal &operator+=(const Decimal &other) { return *this = *this + other; }
    friend bool operator==(const Decimal &a, const Decimal &b) { return (a <=> b) == 0; }
    friend std::strong_ordering operator<=>(const Decimal &a, const Decimal &b);

private:
    // Aligned as other numbers are: a list holds millions of these.
    __extension__ using Digits [[gnu::aligned(8)]] = __int128;
    Decimal(Digits digits, int decimals);

    /// Takes the last digit off a number that is not negative.
    static int TakeLastDigit(Digits &digits);
    static void Align(Decimal &a, Decimal &b);

    Digits m_digits = 0;
    int m_decimals = 0; ///< no trailing zeros: the least count that holds the value
};

/// A quantity as cells show it: "#,##0.000".
QString FormatQuantity(const Decimal &quantity);
