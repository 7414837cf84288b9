#pragma once

#include "lines/Line.h"

#include <span>

/// How a cell of the answer list is typed into.
enum class CellTyping { No, Quantity, Date };

/// A column of the answer list.
struct ListColumn
{
    const char *heading;               ///< its lines separated by CR LF
    const char *leastText;             ///< that there is room for, whatever the list holds
    QString (*text)(const Line &line); ///< what a cell shows, its lines separated by CR LF
    bool isNumber = false;
    CellTyping typing = CellTyping::No;
    QString (*spoken)(const Line &line) = nullptr; ///< for a screen reader, in place of marks
    bool tellsLastAnswer = false;                  ///< in a cell's tooltip
};

/// A line's colour in words: empty for a line like any other.
QString SpokenState(const Line &line);

/// The columns from left to right.
std::span<const ListColumn> ListColumns();

/// The number of the column in which an error of a line is mended.
int ColumnToMend(LineError error);

/// The number, from 1 on, of the column that is typed into in this way.
int ColumnTyped(CellTyping typing);
