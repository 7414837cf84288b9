#include "data/dao/Recordset.h"

#include "data/dao/DaoError.h"
#include "data/dao/SqlText.h"
#include "util/Decimal.h"
#include "util/VbText.h"

#include <QLocale>
#include <cstring>
#include <sqlite3.h>

namespace {

/// Whole numbers are written in groups of seven bits, the lowest first, each byte but the last with
/// its highest bit set: most of a row's numbers and lengths take one byte.
constexpr size_t LongestNumber = 10;

char *WriteNumber(char *at, quint64 number)
{
    for (; number >= 0x80; number >>= 7)
        *at++ = char(number | 0x80);
    *at++ = char(number);
    return at;
}

quint64 ReadNumber(const char *&at)
{
    quint64 number = 0;
    int shift = 0;
    for (; *at & 0x80; shift += 7)
        number |= quint64(*at++ & 0x7F) << shift;
    return number | quint64(*at++) << shift;
}

/// Small numbers of either sign become small ones without a sign, and back.
quint64 WithoutSign(qint64 number)
{
    return quint64(number) << 1 ^ quint64(number >> 63);
}

qint64 WithSign(quint64 number)
{
    return qint64(number >> 1) ^ -qint64(number & 1);
}

qint64 WholeAt(const char *data)
{
    return WithSign(ReadNumber(data));
}

double RealAt(const char *data)
{
    double value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

/// The value that begins at `at`, which moves past it.
RowValue ReadValue(const char *&at)
{
    RowValue value{*at++};
    if (value.type == SQLITE_FLOAT)
        value.length = sizeof(double);
    else if (value.type == SQLITE_TEXT || value.type == SQLITE_BLOB)
        value.length = qsizetype(ReadNumber(at));
    value.data = at;
    if (value.type == SQLITE_INTEGER)
        ReadNumber(at);
    at += value.length;
    return value;
}

constexpr RowValue NoValue{SQLITE_NULL};

} // namespace

Recordset::Recordset(sqlite3_stmt *statement, const QString &source)
    : m_source(source)
{
    // The first step looks at the tables anew, should another program have changed them.
    int result = sqlite3_step(statement);
    for (int field = 0; field < sqlite3_column_count(statement); ++field)
        m_names.push_back(QString::fromUtf8(sqlite3_column_name(statement, field)));
    for (; result == SQLITE_ROW; result = sqlite3_step(statement))
        ReadRow(statement);
    if (result != SQLITE_DONE)
        throw DaoErrors::FromSqlite(sqlite3_db_handle(statement), m_source);
    m_rows.shrink_to_fit();
    MoveFirst();
}

void Recordset::ReadRow(sqlite3_stmt *statement)
{
    const int fields = int(m_names.size());
    for (int field = 0; field < fields; ++field) {
        // The connection has no locks, being one thread's own, and so its values are read directly.
        sqlite3_value *value = sqlite3_column_value(statement, field);
        const int type = sqlite3_value_type(value);
        char *at = m_block.Room(1 + LongestNumber);
        *at++ = char(type);
        if (type == SQLITE_INTEGER) {
            at = WriteNumber(at, WithoutSign(sqlite3_value_int64(value)));
        } else if (type == SQLITE_FLOAT) {
            const double number = sqlite3_value_double(value);
            std::memcpy(at, &number, sizeof number);
            at += sizeof number;
        } else if (type != SQLITE_NULL) {
            const void *bytes = sqlite3_value_blob(value);
            const auto length = size_t(sqlite3_value_bytes(value));
            m_block.WroteTo(WriteNumber(at, length));
            at = m_block.Room(length);
            if (length > 0)
                std::memcpy(at, bytes, length);
            at += length;
        }
        m_block.WroteTo(at);
    }
    m_rows.push_back(m_block.EndRow());
}

void Recordset::Select(size_t row)
{
    m_row = row;
    m_fields.resize(m_names.size());
    if (IsEof())
        return;
    const char *at = m_rows[row];
    for (RowValue &field : m_fields)
        field = ReadValue(at);
}

void Recordset::MoveFirst()
{
    Select(0);
}

void Recordset::MoveLast()
{
    Select(m_rows.empty() ? 0 : m_rows.size() - 1);
}

void Recordset::MoveNext()
{
    if (IsEof())
        throw DaoErrors::Make(DaoErrors::NoCurrentRecord, m_source);
    Select(m_row + 1);
}

void Recordset::Close()
{
    if (!m_isOpen)
        throw DaoErrors::Make(DaoErrors::NoCurrentRecord, m_source);
    m_isOpen = false;
    m_rows = {};
    m_block = {};
    m_row = 0;
}

int Recordset::FieldIndex(QStringView name) const
{
    for (size_t field = 0; field < m_names.size(); ++field)
        if (m_names[field].compare(name, Qt::CaseInsensitive) == 0)
            return int(field);
    return -1;
}

const RowValue &Recordset::Current(int field) const
{
    const bool isThere = !IsEof() && field >= 0 && field < FieldCount();
    return isThere ? m_fields[size_t(field)] : NoValue;
}

RowValue Record::Value(int field) const
{
    const bool isThere = m_rows && m_row >= 0 && m_row < m_rows->RecordCount() && field >= 0
                         && field < m_rows->FieldCount();
    if (!isThere)
        return NoValue;
    const char *at = m_rows->m_rows[size_t(m_row)];
    for (int before = 0; before < field; ++before)
        ReadValue(at);
    return ReadValue(at);
}

bool RowValue::IsNull() const
{
    return type == SQLITE_NULL;
}

QString RowValue::Text() const
{
    switch (type) {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return QString::number(WholeAt(data));
    case SQLITE_FLOAT:
        return Decimal::FromDouble(RealAt(data)).ToText();
    default:
        return QString::fromUtf8(data, length);
    }
}

double RowValue::Number() const
{
    switch (type) {
    case SQLITE_NULL:
        return 0;
    case SQLITE_INTEGER:
        return double(WholeAt(data));
    case SQLITE_FLOAT:
        return RealAt(data);
    default:
        return Val(QString::fromUtf8(data, length));
    }
}

qint64 RowValue::Whole() const
{
    if (type == SQLITE_INTEGER)
        return WholeAt(data);
    constexpr double Limit = 0x1p63;
    const double number = Number();
    return number >= -Limit && number < Limit ? qint64(number) : 0;
}

QString RowValue::SqlLiteral() const
{
    switch (type) {
    case SQLITE_NULL:
        return "NULL";
    case SQLITE_INTEGER:
        return Text();
    case SQLITE_FLOAT:
        return QString::number(RealAt(data), 'e', QLocale::FloatingPointShortest);
    case SQLITE_BLOB:
        return "x'" + QByteArray::fromRawData(data, length).toHex() + '\'';
    default:
        return SqlQuoted(Text());
    }
}
