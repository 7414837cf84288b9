#pragma once

#include "lines/Line.h"

#include <span>

/// How a cell of the answer list is typed into.
enum class CellTyping { No, Quantity, Date };

/// A column of the answer list.
struct ListColumn
{
    const char *heading;               ///< its lines separated by CR LF
    const char *widestText;            ///< a text that the column must have room for
    QString (*text)(const Line &line); ///< what a cell shows, its lines separated by CR LF
    bool isNumber = false;
    CellTyping typing = CellTyping::No;
};

/// The columns from left to right.
std::span<const ListColumn> ListColumns();

/// The number of the column in which an error of a line is mended.
int ColumnToMend(LineError error);

/// The number, from 1 on, of the column that is typed into in this way.
int ColumnTyped(CellTyping typing);
