#pragma once

#include "lines/LineEdits.h"

#include <span>

/// What a column of the grid takes of a pasted block.
enum class PasteColumn { Locked, Quantity, Date };

/// What a block from a spreadsheet, pasted into the grid, would do: tab-separated cells that are
/// laid over the grid's cells from the active one on. A blank cell leaves its place as it is.
struct PastePlan
{
    struct Cell
    {
        int row; ///< of the list
        PasteColumn column;
        Answer answer; ///< its part of that column
    };
    struct Wrong
    {
        int blockRow; ///< from 1
        int blockColumn;
        QString text;
    };

    std::vector<Cell> cells;
    int locked = 0;     ///< cells that fall on what can't be typed into
    int hiddenRows = 0; ///< rows of the list that lie between those that it goes to
    int rowsBeyond = 0; ///< rows with anything in them that the grid has no row for
    std::vector<Wrong> wrong;

    /// Nothing is pasted when a part of the block can't be.
    bool IsGood() const { return wrong.empty() && rowsBeyond == 0; }
};

/// Lays a block over rows of the list and columns of the grid, as they are shown from the active
/// cell on. A date is one of a sheet or as the grid shows it; a quantity may have its thousands
/// separated.
PastePlan PlanPaste(const QString &text, const LineList &list, std::span<const int> rows,
                    std::span<const PasteColumn> columns);

/// Makes the changes of a good plan as if they had been typed, all to be taken back in one. Returns
/// the rows that they have changed.
RowSelection Paste(const PastePlan &plan, LineEdits &edits);

/// What a paste has done, or why it has done nothing, for the operator.
QString PasteText(const PastePlan &plan);
