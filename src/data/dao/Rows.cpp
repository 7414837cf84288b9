#include "data/dao/Rows.h"

#include "data/dao/SqlText.h"
#include "util/Decimal.h"
#include "util/VbText.h"

#include <QLocale>

namespace {

qint64 WholeAt(const char *data)
{
    const quint64 withoutSign = ReadNumber(data);
    return qint64(withoutSign >> 1) ^ -qint64(withoutSign & 1);
}

double RealAt(const char *data)
{
    double value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

} // namespace

QString RowValue::Text() const
{
    switch (type) {
    case ValueType::Null:
        return {};
    case ValueType::Whole:
        return QString::number(WholeAt(data));
    case ValueType::Real:
        return Decimal::FromDouble(RealAt(data)).ToText();
    default:
        return QString::fromUtf8(data, length);
    }
}

double RowValue::Number() const
{
    switch (type) {
    case ValueType::Null:
        return 0;
    case ValueType::Whole:
        return double(WholeAt(data));
    case ValueType::Real:
        return RealAt(data);
    default:
        return Val(QString::fromUtf8(data, length));
    }
}

qint64 RowValue::Whole() const
{
    if (type == ValueType::Whole)
        return WholeAt(data);
    constexpr double Limit = 0x1p63;
    const double number = Number();
    return number >= -Limit && number < Limit ? qint64(number) : 0;
}

QString RowValue::SqlLiteral() const
{
    switch (type) {
    case ValueType::Null:
        return "NULL";
    case ValueType::Whole:
        return Text();
    case ValueType::Real:
        return QString::number(RealAt(data), 'e', QLocale::FloatingPointShortest);
    case ValueType::Bytes:
        return "x'" + QByteArray::fromRawData(data, length).toHex() + '\'';
    default:
        return SqlQuoted(Text());
    }
}
