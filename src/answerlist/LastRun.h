#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"

#include <vector>

/// What the last run on a list has answered.
class LastRun
{
public:
    /// Takes a run's selection before and after it: rows of answered orders have left it. A run
    /// that has answered nothing leaves the one before it the last.
    void Note(const LineList &list, const RowSelection &before, const RowSelection &after);

    void Clear() { m_orders.clear(); }

    /// The rows whose answers it has output.
    RowSelection Rows(const LineList &list) const;

private:
    std::vector<qint64> m_orders;
};
