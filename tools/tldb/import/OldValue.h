#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>
#include <variant>

/// Values of the original engine's format, from the bytes that a file has for them. Numbers are
/// little-endian. None of these routines reads past the bytes it is given.

/// A decimal number as text, with all its digits: "-12.5".
struct ExactNumber
{
    QString text;

    bool operator==(const ExactNumber &) const = default;
};

/// A value whose bytes make no sense or can't be reached.
struct Unreadable
{
    bool operator==(const Unreadable &) const = default;
};

/// std::monostate is null. A boolean is 1 or 0, a date-time a text.
using OldValue
    = std::variant<std::monostate, qint64, double, ExactNumber, QString, QByteArray, Unreadable>;

enum class OldType {
    Boolean,
    Byte,
    Short,
    Long,
    Currency,
    Single,
    Double,
    DateTime,
    Text,
    Memo,
    Binary,
    LongBinary,
    Guid,
    Decimal
};

/// The value that the bytes of a column stand for; Unreadable when there are too few. A memo and a
/// long binary are given whole, not as the reference that a row has. `decimals` is a Decimal's.
OldValue ToValue(OldType type, QByteArrayView bytes, int decimals);

/// UTF-16, plain or in the format's compressed form. Half a character at the end is U+FFFD.
QString ToText(QByteArrayView bytes);

/// "YYYY-MM-DD HH:MM:SS" of a number of days since 1899-12-30, to the second; nothing for a number
/// outside of the years 100 to 9999. Before that day the fraction counts forward all the same.
std::optional<QString> ToDateTime(double days);
