#include "data/dao/postgres/PostgresRows.h"

#include <charconv>
#include <libpq-fe.h>

namespace {

/// The server's numbers of its own types; others are taken as texts, and so is NUMERIC, which has
/// more digits than a double.
enum TypeId : Oid {
    BoolType = 16,
    BytesType = 17,
    Int8Type = 20,
    Int2Type = 21,
    Int4Type = 23,
    OidType = 26,
    Float4Type = 700,
    Float8Type = 701,
};

} // namespace

void PostgresRows::Take(const PGresult *result)
{
    const int columns = PQnfields(result);
    if (columns == 0)
        return;
    if (m_forms.empty())
        TakeColumns(result);
    for (int row = 0; row < PQntuples(result); ++row) {
        for (int column = 0; column < columns; ++column) {
            if (PQgetisnull(result, row, column))
                m_rows.Null();
            else
                TakeValue(m_forms[size_t(column)], PQgetvalue(result, row, column),
                          size_t(PQgetlength(result, row, column)));
        }
        m_rows.EndRow();
    }
}

void PostgresRows::TakeColumns(const PGresult *result)
{
    std::vector<QString> names;
    for (int column = 0; column < PQnfields(result); ++column) {
        names.push_back(QString::fromUtf8(PQfname(result, column)));
        switch (PQftype(result, column)) {
        case Int2Type:
        case Int4Type:
        case Int8Type:
        case OidType:
            m_forms.push_back(Form::Whole);
            break;
        case Float4Type:
        case Float8Type:
            m_forms.push_back(Form::Real);
            break;
        case BoolType:
            m_forms.push_back(Form::Bool);
            break;
        case BytesType:
            m_forms.push_back(Form::Bytes);
            break;
        default:
            m_forms.push_back(Form::Text);
        }
    }
    m_rows.Columns(std::move(names));
}

void PostgresRows::TakeValue(Form form, const char *text, size_t length)
{
    switch (form) {
    case Form::Whole: {
        qint64 number = 0;
        std::from_chars(text, text + length, number);
        m_rows.Whole(number);
        break;
    }
    case Form::Real: {
        double number = 0;
        std::from_chars(text, text + length, number);
        m_rows.Real(number);
        break;
    }
    case Form::Bool: // stored again as the same, and read as a number
        m_rows.Text(*text == 't' ? "1" : "0", 1);
        break;
    case Form::Bytes: {
        const QByteArray bytes = QByteArray::fromHex(QByteArray(text + 2, qsizetype(length) - 2));
        m_rows.Bytes(bytes.constData(), size_t(bytes.size()));
        break;
    }
    default:
        m_rows.Text(text, length);
    }
}
