#pragma once

#include "data/dao/RowBlock.h"

#include <QByteArrayView>
#include <QString>
#include <cstring>
#include <utility>
#include <vector>

enum class ValueType : char { Null, Whole, Real, Text, Bytes };

/// One value of a row, where the row's block has it.
struct RowValue
{
    ValueType type = ValueType::Null;
    const char *data = nullptr;
    qsizetype length = 0;

    bool IsNull() const { return type == ValueType::Null; }
    bool IsNumber() const { return type == ValueType::Whole || type == ValueType::Real; }
    QString Text() const;
    double Number() const;
    qint64 Whole() const;
    QString SqlLiteral() const;

    /// The bytes of a text or of bytes.
    QByteArrayView Bytes() const { return {data, length}; }
};

/// Takes the rows of a query as an engine reads them: the names of the columns, then value after
/// value, each row with its end.
class RowReceiver
{
public:
    RowReceiver() = default;
    virtual ~RowReceiver() = default;
    RowReceiver(RowReceiver &&) = default;
    RowReceiver &operator=(RowReceiver &&) = default;

    virtual void Columns(std::vector<QString> names) = 0;

    void Null() { m_block.WroteTo(WriteType(ValueType::Null)); }
    void Whole(qint64 number)
    {
        // Small numbers of either sign become small ones without a sign.
        const quint64 withoutSign = quint64(number) << 1 ^ quint64(number >> 63);
        m_block.WroteTo(WriteNumber(WriteType(ValueType::Whole), withoutSign));
    }
    void Real(double number)
    {
        char *at = WriteType(ValueType::Real);
        std::memcpy(at, &number, sizeof number);
        m_block.WroteTo(at + sizeof number);
    }
    void Text(const char *utf8, size_t length) { Write(ValueType::Text, utf8, length); }
    void Bytes(const char *bytes, size_t length) { Write(ValueType::Bytes, bytes, length); }

    virtual void EndRow() = 0;

protected:
    RowBlock m_block; ///< per value: its type, then its number, or its length and bytes

private:
    /// Whole numbers are written in groups of seven bits, the lowest first, each byte but the last
    /// with its highest bit set: most of a row's numbers and lengths take one byte.
    static constexpr size_t LongestNumber = 10;

    char *WriteType(ValueType type)
    {
        char *at = m_block.Room(1 + LongestNumber);
        *at++ = char(type);
        return at;
    }

    static char *WriteNumber(char *at, quint64 number)
    {
        for (; number >= 0x80; number >>= 7)
            *at++ = char(number | 0x80);
        *at++ = char(number);
        return at;
    }

    void Write(ValueType type, const char *bytes, size_t length)
    {
        m_block.WroteTo(WriteNumber(WriteType(type), length));
        char *at = m_block.Room(length);
        if (length > 0)
            std::memcpy(at, bytes, length);
        m_block.WroteTo(at + length);
    }
};

/// The number that a row has at `at`, which moves past it.
inline quint64 ReadNumber(const char *&at)
{
    quint64 number = 0;
    int shift = 0;
    for (; *at & 0x80; shift += 7)
        number |= quint64(*at++ & 0x7F) << shift;
    return number | quint64(*at++) << shift;
}

/// The value of a received row that begins at `at`, which moves past it.
inline RowValue ReadValue(const char *&at)
{
    RowValue value{ValueType(*at++)};
    if (value.type == ValueType::Real)
        value.length = sizeof(double);
    else if (value.type == ValueType::Text || value.type == ValueType::Bytes)
        value.length = qsizetype(ReadNumber(at));
    value.data = at;
    if (value.type == ValueType::Whole)
        ReadNumber(at);
    at += value.length;
    return value;
}

/// All rows of a query in one compact block.
class RowStore : public RowReceiver
{
public:
    void Columns(std::vector<QString> columnNames) override { names = std::move(columnNames); }
    void EndRow() override { rows.push_back(m_block.EndRow()); }

    std::vector<QString> names;
    std::vector<const char *> rows; ///< where each row begins in the block
};
