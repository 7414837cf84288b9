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
    const QString text = value.ToText();
    const qsizetype point = text.indexOf('.');
    QStringView digits = QStringView(text).left(point < 0 ? text.size() : point);
    if (digits.startsWith(u'-'))
        digits = digits.sliced(1);
    digits = digits.right(counts->integerDigits);
    const QStringView decimals
        = point < 0 ? QStringView() : QStringView(text).mid(point + 1, counts->decimals);
    QString filled(counts->integerDigits + counts->decimals, '0');
    std::copy(digits.begin(), digits.end(), filled.begin() + counts->integerDigits - digits.size());
    std::copy(decimals.begin(), decimals.end(), filled.begin() + counts->integerDigits);
    return filled;
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

std::optional<Decimal> TextToDecimal(QStringView text)
{
    return text.isEmpty() ? std::nullopt : std::optional(Decimal::FromText(text));
}

Decimal QuantityOf(QStringView text)
{
    return TextToDecimal(text).value_or(Decimal());
}
