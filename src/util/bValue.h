#pragma once

#include "util/Decimal.h"

#include <QString>
#include <optional>

/// A digit spec "I.D" tells the size of a number: at most I integer digits and D decimals. A spec
/// without ".", or with it first or last, is malformed. Decimals are cut, never rounded.
namespace DigitSpec {
inline constexpr auto Quantity = "9.3";
inline constexpr auto LargeQuantity = "10.3";
inline constexpr auto Counter = "2.0";
inline constexpr auto RecordNumber = "5.0";
} // namespace DigitSpec

/// Display text. Mode 1: natural width, with blanks in place of a missing decimal part; any other
/// mode: right-aligned in the width that the digit spec allows. A malformed spec gives the number's
/// text.
QString FormatBySpec(const Decimal &value, const QString &spec, int mode, bool useComma);

/// Fixed-width digits without a decimal point or sign, for record fields: "9.3" and 12.5 give
/// "000000012500". Keeps the last I integer digits. A malformed spec gives the number's text.
QString ZeroFillBySpec(const Decimal &value, const QString &spec);

/// True when the typed text is digits with at most one needed ".", and fits the digit spec.
bool IsNumberInSpec(const QString &value, const QString &spec);

/// The exact value of a displayed number, thousands separators allowed; nothing for an empty text.
std::optional<Decimal> TextToDecimal(QStringView text);
inline std::optional<Decimal> TextToDecimal(const QString &text)
{
    return TextToDecimal(QStringView(text));
}

/// TextToDecimal with 0 for an empty text.
Decimal QuantityOf(QStringView text);
inline Decimal QuantityOf(const QString &text)
{
    return QuantityOf(QStringView(text));
}

/// The counts of a digit spec; nothing when it is malformed.
struct DigitCounts
{
    int integerDigits = 0;
    int decimals = 0;
};
std::optional<DigitCounts> ParseDigitSpec(const QString &spec);
