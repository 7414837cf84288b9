#pragma once

#include <QString>

class LineList;
struct LineCounts;

/// The name of the date that the search's range is about.
QString DateBasisName(const QString &basis);

/// What stands beside 件数: how many lines of the list are in which state, how many rows are
/// selected and, when lines are hidden, shown.
QString CountsText(const LineCounts &counts, int selected, int shown);

/// While a row's order is answered in parts that are not registered yet: what its answers leave of
/// what is open. Else empty.
QString RemainderText(const LineList &list, int row);
