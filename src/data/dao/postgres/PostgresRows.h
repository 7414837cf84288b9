#pragma once

#include "data/dao/Rows.h"

#include <vector>

struct pg_result;

/// Hands the rows of results that come one by one over to a receiver.
class PostgresRows
{
public:
    explicit PostgresRows(RowReceiver &rows)
        : m_rows(rows)
    {
    }

    /// Takes a result's rows; a result without columns is passed over. Throws DaoError for a value
    /// that is not of its type.
    void Take(const pg_result *result);

private:
    enum class Form { Text, Whole, Real, Bool, Bytes };

    void TakeColumns(const pg_result *result);
    void TakeValue(Form form, const char *text, size_t length);

    RowReceiver &m_rows;
    std::vector<Form> m_forms; ///< of the columns; empty until they are known
};
