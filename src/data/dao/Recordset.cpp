#include "data/dao/Recordset.h"

#include "data/dao/DaoError.h"
#include "util/Decimal.h"
#include "util/VbText.h"

#include <QLocale>
#include <cstring>
#include <sqlite3.h>

namespace {

template <typename T>
T Load(const char *data)
{
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

template <typename T>
void Store(std::vector<char> &row, T value)
{
    const auto *bytes = reinterpret_cast<const char *>(&value);
    row.insert(row.end(), bytes, bytes + sizeof value);
}

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
    MoveFirst();
}

void Recordset::ReadRow(sqlite3_stmt *statement)
{
    m_rows.push_back(m_block.size());
    m_newRow.clear();
    for (int field = 0; field < int(m_names.size()); ++field) {
        const char type = char(sqlite3_column_type(statement, field));
        m_newRow.push_back(type);
        if (type == SQLITE_INTEGER) {
            Store(m_newRow, sqlite3_column_int64(statement, field));
        } else if (type == SQLITE_FLOAT) {
            Store(m_newRow, sqlite3_column_double(statement, field));
        } else if (type != SQLITE_NULL) {
            const auto *text
                = reinterpret_cast<const char *>(sqlite3_column_text(statement, field));
            const int length = sqlite3_column_bytes(statement, field);
            Store(m_newRow, length);
            m_newRow.insert(m_newRow.end(), text, text + length);
        }
    }
    m_block.append(m_newRow.data(), qsizetype(m_newRow.size()));
}

void Recordset::Select(size_t row)
{
    m_row = row;
    m_fields.resize(m_names.size());
    if (IsEof())
        return;
    const char *at = m_block.constData() + m_rows[row];
    for (Field &field : m_fields) {
        field.type = *at++;
        field.length = 0;
        if (field.type == SQLITE_INTEGER || field.type == SQLITE_FLOAT) {
            field.length = 8;
        } else if (field.type != SQLITE_NULL) {
            field.length = Load<int>(at);
            at += sizeof(int);
        }
        field.data = at;
        at += field.length;
    }
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
    throw DaoErrors::Make(DaoErrors::ItemNotFound, m_source, name.toString());
}

const Recordset::Field &Recordset::Current(int field) const
{
    if (IsEof())
        throw DaoErrors::Make(DaoErrors::NoCurrentRecord, m_source);
    return m_fields.at(size_t(field));
}

bool Recordset::IsNull(int field) const
{
    return Current(field).type == SQLITE_NULL;
}

QString Recordset::Text(int field) const
{
    const Field &value = Current(field);
    switch (value.type) {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return QString::number(Load<qint64>(value.data));
    case SQLITE_FLOAT:
        return Decimal::FromDouble(Load<double>(value.data)).ToText();
    default:
        return QString::fromUtf8(value.data, value.length);
    }
}

QString Recordset::SqlLiteral(int field) const
{
    const Field &value = Current(field);
    switch (value.type) {
    case SQLITE_NULL:
        return "NULL";
    case SQLITE_INTEGER:
        return Text(field);
    case SQLITE_FLOAT:
        return QString::number(Load<double>(value.data), 'e', QLocale::FloatingPointShortest);
    case SQLITE_BLOB:
        return "x'" + QByteArray::fromRawData(value.data, value.length).toHex() + '\'';
    default:
        return '\'' + Text(field).replace("'", "''") + '\'';
    }
}

double Recordset::Number(int field) const
{
    const Field &value = Current(field);
    switch (value.type) {
    case SQLITE_NULL:
        return 0;
    case SQLITE_INTEGER:
        return double(Load<qint64>(value.data));
    case SQLITE_FLOAT:
        return Load<double>(value.data);
    default:
        return Val(QString::fromUtf8(value.data, value.length));
    }
}
