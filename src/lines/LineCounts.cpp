#include "lines/LineCounts.h"

void LineCounts::Add(const Line &line, const QString &today, int times)
{
    lines += times;
    changed += line.IsUnregistered() ? times : 0;
    if (!line.IsOpen())
        return;
    open += times;
    // A blank date, or whatever else stands in its place, is not before any day.
    const QString specified = line.SpecifiedDate();
    overdue += specified.size() == today.size() && specified < today ? times : 0;
}

LineCounts LineCounts::Of(const LineList &list, const QString &today)
{
    LineCounts counts;
    for (int row = 1; row <= list.Count(); ++row)
        counts.Add(list.At(row), today);
    return counts;
}
