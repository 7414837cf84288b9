#pragma once

#include "lines/LineList.h"

/// How many lines of a list are in a state that the operator works by.
struct LineCounts
{
    int lines = 0;
    int changed = 0; ///< not registered: changed ones and new splits
    int open = 0;    ///< neither answered nor shipped
    int overdue = 0; ///< of the open ones, specified before today

    /// Counts a line, or with -1 takes it out again. `today` is in stored form.
    void Add(const Line &line, const QString &today, int times = 1);

    static LineCounts Of(const LineList &list, const QString &today);
};
