#include "util/bValue.h"

#include "util/VbText.h"

#include <algorithm>

std::optional<DigitCounts> ParseDigitSpec(const QString &spec)
{
    const qsizetype point = spec.indexOf('.');
    if (point <= 0 || point == spec.size() - 1)
        return std::nullopt;
    return DigitCounts{IntVal(QStringView(spec).left(point)),
                       IntVal(QStringView(spec).mid(point + 1))};
}

namespace {

/// The characters after the point of the number's text; nothing for a whole number.
std::optional<QString> DecimalsOf(const Decimal &value)
{
    const QString text = value.ToText();
    const qsizetype point = text.indexOf('.');
    return point < 0 ? std::nullopt : std::optional(text.mid(point + 1));
}

} // namespace

QString FormatBySpec(const Decimal &value, const QString &spec, int mode, bool useComma)
{
    const auto counts = ParseDigitSpec(spec);
    if (!counts)
        return value.ToText();
    const auto [integerDigits, decimals] = *counts;
    QString whole = value.Truncated().ToFixed(0, useComma);
    const auto fraction = DecimalsOf(value);
    const bool showsFraction = decimals > 0 && fraction.has_value();

    if (mode != 1) {
        int width = integerDigits;
        if (useComma)
            width += integerDigits / 3 - (integerDigits % 3 == 0 ? 1 : 0);
        whole = whole.rightJustified(width, ' ').right(width);
    } else if (decimals > 0 && !showsFraction) {
        return whole + QString(decimals + 1, ' ');
    }
    return showsFraction ? whole + '.' + FixedText(*fraction, decimals) : whole;
}

QString ZeroFillBySpec(const Decimal &value, const QString &spec)
{
    const auto counts = ParseDigitSpec(spec);
    if (!counts)
        return value.ToText();
    const Decimal whole = value.Truncated();
    const QString digits = (whole.IsNegative() ? -whole : whole).ToText();
    const QString fraction = DecimalsOf(value).value_or(QString());
    return digits.rightJustified(counts->integerDigits, '0').right(counts->integerDigits)
           + fraction.leftJustified(counts->decimals, '0').left(counts->decimals);
}

bool IsNumberInSpec(const QString &value, const QString &spec)
{
    const auto counts = ParseDigitSpec(spec);
    const QString trimmed = Trim(value);
    if (!counts || trimmed.startsWith('.') || trimmed.endsWith('.'))
        return false;
    const qsizetype point = trimmed.indexOf('.');
    qsizetype integerLength = point > 0 ? point : value.size();
    const qsizetype decimalLength = point > 0 ? value.size() - (point + 1) : 0;
    // Only matters for texts that the last test refuses anyway.
    if (value.contains('+') || value.contains('-'))
        --integerLength;
    if (integerLength > counts->integerDigits || decimalLength > counts->decimals)
        return false;
    return std::all_of(value.begin(), value.end(),
                       [](QChar c) { return (c >= u'0' && c <= u'9') || c == u'.'; });
}

std::optional<Decimal> TextToDecimal(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(Decimal::FromText(text));
}

Decimal QuantityOf(const QString &text)
{
    return TextToDecimal(text).value_or(Decimal());
}
