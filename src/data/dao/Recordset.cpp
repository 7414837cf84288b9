#include "data/dao/Recordset.h"

#include "data/dao/DaoError.h"

Recordset::Recordset(RowStore store, const QString &source)
    : m_source(source)
    , m_store(std::move(store))
{
    m_store.rows.shrink_to_fit();
    MoveFirst();
}

void Recordset::Select(size_t row)
{
    m_row = row;
    m_fields.resize(m_store.names.size());
    if (IsEof())
        return;
    const char *at = m_store.rows[row];
    for (RowValue &field : m_fields)
        field = ReadValue(at);
}

void Recordset::MoveFirst()
{
    Select(0);
}

void Recordset::MoveLast()
{
    Select(m_store.rows.empty() ? 0 : m_store.rows.size() - 1);
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
    RowStore columnsOnly;
    columnsOnly.names = std::move(m_store.names);
    m_store = std::move(columnsOnly);
    m_row = 0;
}

int Recordset::FieldIndex(QStringView name) const
{
    for (size_t field = 0; field < m_store.names.size(); ++field)
        if (m_store.names[field].compare(name, Qt::CaseInsensitive) == 0)
            return int(field);
    return -1;
}

RowValue Recordset::Current(int field) const
{
    const bool isThere = !IsEof() && field >= 0 && field < FieldCount();
    return isThere ? m_fields[size_t(field)] : RowValue{};
}

RowValue Record::Value(int field) const
{
    const bool isThere = m_rows && m_row >= 0 && m_row < m_rows->RecordCount() && field >= 0
                         && field < m_rows->FieldCount();
    if (!isThere)
        return RowValue{};
    const char *at = m_rows->m_store.rows[size_t(m_row)];
    for (int before = 0; before < field; ++before)
        ReadValue(at);
    return ReadValue(at);
}
