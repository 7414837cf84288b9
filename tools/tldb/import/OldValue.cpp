#include "tldb/import/OldValue.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int CurrencyDecimals = 4;
constexpr int MostDecimals = 28;
constexpr QByteArrayView CompressedMark("\xff\xfe", 2);

/// The number that the bytes begin with; they are enough.
template <typename Number>
Number Read(QByteArrayView bytes)
{
    Number number;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

__extension__ using Digits = unsigned __int128;

ExactNumber ToExact(bool isNegative, Digits digits, int decimals)
{
    QString text;
    for (; digits > 0 || text.size() <= decimals; digits /= 10)
        text.prepend(QChar('0' + int(digits % 10)));
    if (decimals > 0) {
        text.insert(text.size() - decimals, '.');
        while (text.endsWith('0'))
            text.chop(1);
        if (text.endsWith('.'))
            text.chop(1);
    }
    return {(isNegative && text != "0" ? "-" : "") + text};
}

ExactNumber ToCurrency(qint64 tenThousandths)
{
    const bool isNegative = tenThousandths < 0;
    const quint64 digits = isNegative ? -quint64(tenThousandths) : quint64(tenThousandths);
    return ToExact(isNegative, digits, CurrencyDecimals);
}

/// A sign byte, then four words, the highest first.
ExactNumber ToDecimal(QByteArrayView bytes, int decimals)
{
    Digits digits = 0;
    for (int word = 0; word < 4; ++word)
        digits = digits << 32 | Read<quint32>(bytes.sliced(1 + 4 * word));
    return ToExact(bytes[0] != 0, digits, decimals);
}

QString ToGuid(QByteArrayView bytes)
{
    const QString tail = QString::fromLatin1(bytes.sliced(8).toByteArray().toHex().toUpper());
    return QString::asprintf("{%08X-%04X-%04X-", Read<quint32>(bytes),
                             Read<quint16>(bytes.sliced(4)), Read<quint16>(bytes.sliced(6)))
           + tail.first(4) + '-' + tail.sliced(4) + '}';
}

/// Bytes that a value of the type has at least.
qsizetype SizeOf(OldType type)
{
    switch (type) {
    case OldType::Byte:
        return 1;
    case OldType::Short:
        return 2;
    case OldType::Long:
    case OldType::Single:
        return 4;
    case OldType::Currency:
    case OldType::Double:
    case OldType::DateTime:
        return 8;
    case OldType::Guid:
        return 16;
    case OldType::Decimal:
        return 17;
    default:
        return 0;
    }
}

} // namespace

OldValue ToValue(OldType type, QByteArrayView bytes, int decimals)
{
    if (bytes.size() < SizeOf(type))
        return Unreadable();
    switch (type) {
    case OldType::Boolean:
        return qint64(!bytes.isEmpty() && bytes[0] != 0);
    case OldType::Byte:
        return qint64(Read<quint8>(bytes));
    case OldType::Short:
        return qint64(Read<qint16>(bytes));
    case OldType::Long:
        return qint64(Read<qint32>(bytes));
    case OldType::Currency:
        return ToCurrency(Read<qint64>(bytes));
    case OldType::Single:
        return double(Read<float>(bytes));
    case OldType::Double:
        return Read<double>(bytes);
    case OldType::DateTime: {
        const auto text = ToDateTime(Read<double>(bytes));
        return text ? OldValue(*text) : Unreadable();
    }
    case OldType::Text:
    case OldType::Memo:
        return ToText(bytes);
    case OldType::Guid:
        return ToGuid(bytes);
    case OldType::Decimal:
        if (decimals < 0 || decimals > MostDecimals)
            return Unreadable();
        return ToDecimal(bytes, decimals);
    case OldType::Binary:
    case OldType::LongBinary:
        break;
    }
    return bytes.toByteArray();
}

QString ToText(QByteArrayView bytes)
{
    QString text;
    const bool hasMark = bytes.startsWith(CompressedMark);
    // In the compressed form a zero byte changes between one and two bytes a character.
    bool isCompressed = hasMark;
    for (qsizetype at = hasMark ? CompressedMark.size() : 0; at < bytes.size();) {
        if (hasMark && bytes[at] == 0) {
            isCompressed = !isCompressed;
            ++at;
        } else if (isCompressed) {
            text += QLatin1Char(bytes[at++]);
        } else if (at + 1 < bytes.size()) {
            text += QChar(Read<quint16>(bytes.sliced(at)));
            at += 2;
        } else {
            text += QChar(QChar::ReplacementCharacter);
            break;
        }
    }
    return text;
}

std::optional<QString> ToDateTime(double days)
{
    constexpr double FirstDay = -657434; // 0100-01-01
    constexpr double EndDay = 2958466;   // 10000-01-01
    if (!(days > FirstDay - 1 && days < EndDay))
        return std::nullopt;
    constexpr int SecondsPerDay = 24 * 60 * 60;
    const double day = std::trunc(days);
    const auto seconds = std::llround(std::abs(days - day) * SecondsPerDay);
    const QDateTime origin(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
    return origin.addDays(qint64(day)).addSecs(seconds).toString("yyyy-MM-dd HH:mm:ss");
}
