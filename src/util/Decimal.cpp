#include "util/Decimal.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int MaxDecimals = 18;
constexpr int MaxIntegerDigits = 18;

} // namespace

int Decimal::TakeLastDigit(Digits &digits)
{
    if (digits <= std::numeric_limits<quint64>::max()) {
        const quint64 narrow = quint64(digits);
        digits = narrow / 10;
        return int(narrow % 10);
    }
    const int digit = int(digits % 10);
    digits /= 10;
    return digit;
}

Decimal::Decimal(Digits digits, int decimals)
    : m_digits(digits)
    , m_decimals(decimals)
{
    // Division of the wide type is slow, and few numbers need it.
    qint64 narrow = qint64(m_digits);
    if (narrow == m_digits) {
        for (; m_decimals > 0 && narrow % 10 == 0; --m_decimals)
            narrow /= 10;
        m_digits = narrow;
    }
    for (; m_decimals > 0 && m_digits % 10 == 0; --m_decimals)
        m_digits /= 10;
}

Decimal Decimal::FromDouble(double value)
{
    // Nearly every quantity is whole or has at most three decimals; those need no text.
    if (std::abs(value) < 1e15 && value == std::trunc(value))
        return Decimal(qint64(value));
    const double thousandths = value * 1000;
    if (std::abs(thousandths) < 1e12 && thousandths == std::nearbyint(thousandths))
        return Decimal(Digits(qint64(thousandths)), 3);
    if (!std::isfinite(value) || std::abs(value) >= 1e18)
        return {};
    const int integerDigits = value == 0 ? 1 : int(std::floor(std::log10(std::abs(value)))) + 1;
    return FromText(QString::number(value, 'f', std::clamp(15 - integerDigits, 0, MaxDecimals)));
}

Decimal Decimal::FromText(QStringView text)
{
    Digits digits = 0;
    int decimals = 0;
    int integerDigits = 0;
    bool isNegative = false;
    bool isPastPoint = false;
    bool isStarted = false;
    for (const QChar c : text) {
        if (c >= u'0' && c <= u'9') {
            isStarted = true;
            if (isPastPoint ? decimals == MaxDecimals : integerDigits == MaxIntegerDigits)
                continue;
            digits = digits * 10 + (c.unicode() - u'0');
            if (isPastPoint)
                ++decimals;
            else if (digits != 0)
                ++integerDigits;
        } else if (c == u'.' && !isPastPoint) {
            isPastPoint = true;
        } else if ((c == u'-' || c == u'+') && !isStarted) {
            isNegative = c == u'-';
            isStarted = true;
        } else if (c != u',' && c != u' ') {
            break;
        }
    }
    return Decimal(isNegative ? -digits : digits, decimals);
}

double Decimal::ToDouble() const
{
    return ToText().toDouble();
}

QString Decimal::ToText() const
{
    return ToFixed(m_decimals, false);
}

Decimal Decimal::Truncated() const
{
    Digits digits = m_digits;
    for (int place = 0; place < m_decimals; ++place)
        digits /= 10;
    return Decimal(digits, 0);
}

Decimal Decimal::Rounded(int decimals) const
{
    if (m_decimals <= decimals)
        return *this;
    Digits digits = m_digits;
    for (int place = m_decimals; place > decimals + 1; --place)
        digits /= 10;
    digits = (digits + (digits < 0 ? -5 : 5)) / 10;
    return Decimal(digits, decimals);
}

QString Decimal::ToFixed(int decimals, bool useComma) const
{
    const Decimal rounded = Rounded(decimals);
    Digits digits = rounded.m_digits < 0 ? -rounded.m_digits : rounded.m_digits;
    for (int place = rounded.m_decimals; place < decimals; ++place)
        digits *= 10;

    // From the last character to the first.
    char16_t text[80];
    char16_t *at = std::end(text);
    const int wholeStart = decimals + 1;
    for (int place = 1; digits != 0 || place <= wholeStart; ++place) {
        if (place == wholeStart && decimals > 0)
            *--at = u'.';
        if (useComma && place > wholeStart && (place - wholeStart) % 3 == 0)
            *--at = u',';
        *--at = char16_t(u'0' + TakeLastDigit(digits));
    }
    if (rounded.m_digits < 0)
        *--at = u'-';
    return QString(reinterpret_cast<const QChar *>(at), std::end(text) - at);
}

Decimal Decimal::operator-() const
{
    return Decimal(-m_digits, m_decimals);
}

void Decimal::Align(Decimal &a, Decimal &b)
{
    for (; a.m_decimals < b.m_decimals; ++a.m_decimals)
        a.m_digits *= 10;
    for (; b.m_decimals < a.m_decimals; ++b.m_decimals)
        b.m_digits *= 10;
}

Decimal operator+(const Decimal &a, const Decimal &b)
{
    Decimal left = a;
    Decimal right = b;
    Decimal::Align(left, right);
    return Decimal(left.m_digits + right.m_digits, left.m_decimals);
}

std::strong_ordering operator<=>(const Decimal &a, const Decimal &b)
{
    Decimal left = a;
    Decimal right = b;
    Decimal::Align(left, right);
    return left.m_digits <=> right.m_digits;
}

QString FormatQuantity(const Decimal &quantity)
{
    return quantity.ToFixed(3, true);
}
