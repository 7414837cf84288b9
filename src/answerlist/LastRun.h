#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"

#include <vector>

/// What the last run on a list has answered, as it was then: the list goes on from there.
class LastRun
{
public:
    /// Takes a run's selection before and after it: rows of answered orders have left it. A run
    /// that has answered nothing leaves the one before it the last.
    void Note(const LineList &list, const RowSelection &before, const RowSelection &after);

    void Clear() { m_lines.clear(); }

    /// The lines whose answers it has output, in the order of the list; good as long as that.
    const std::vector<Line> &Lines() const { return m_lines; }

private:
    std::vector<Line> m_lines;
};
