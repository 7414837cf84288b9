#include "util/Decimal.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int MaxDecimals = 18;
constexpr int MaxIntegerDigits = 18;

} // namespace

Decimal::Decimal(Digits digits, int decimals)
    : m_digits(digits)
    , m_decimals(decimals)
{
    while (m_decimals > 0 && m_digits % 10 == 0) {
        m_digits /= 10;
        --m_decimals;
    }
}

Decimal Decimal::FromDouble(double value)
{
    // Nearly every quantity has at most three decimals; those need no text.
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
    Digits rest = m_digits < 0 ? -m_digits : m_digits;
    QString reversed;
    for (int place = 0; rest != 0 || place <= m_decimals; ++place) {
        if (place == m_decimals && m_decimals > 0)
            reversed += '.';
        reversed += QChar(u'0' + int(rest % 10));
        rest /= 10;
    }
    if (m_digits < 0)
        reversed += '-';
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
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
    const QString text = Rounded(decimals).ToText();
    const qsizetype point = text.indexOf('.');
    QString whole = point < 0 ? text : text.left(point);
    const QString fraction = point < 0 ? QString() : text.mid(point + 1);
    if (useComma)
        for (qsizetype at = whole.size() - 3; at > (whole.startsWith('-') ? 1 : 0); at -= 3)
            whole.insert(at, ',');
    return decimals == 0 ? whole : whole + '.' + fraction.leftJustified(decimals, '0');
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
