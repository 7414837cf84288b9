#pragma once

#include "lines/LineEdits.h"
#include "sheet/SheetReading.h"

/// Why a row of a file can't be taken.
enum class SheetRefusal {
    None,
    Broken,      ///< its quotes are wrong
    TooLong,     ///< more cells than headings
    NoKey,       ///< a number of the key is none
    NoSuchLine,  ///< the list does not have it
    NoSuchSplit, ///< the unstored split that was written is not there any more
    OtherOrder,  ///< the line is of another order number
    OtherLine,   ///< rows were mixed: it was written for another line
    TwoRows,     ///< another row is about the same line
    Shipped,
    AnsweredSince,  ///< since the file was written
    ChangedSince,   ///< its stored answer was, since the file was written
    AnsweredBefore, ///< and the file does not tell whether it knew
    NoDate,
    NoNumber,
    NoQuantity,   ///< a split of nothing
    MoreThanOpen, ///< with the other answers of its order
};

/// The operator's text for it; empty for none.
QString RefusalText(SheetRefusal refusal);

/// What a file would change in the list. Rows of the list count from 1, lines of the file too.
struct SheetPlan
{
    struct Change
    {
        int fileLine;
        int row;
        Answer before;
        Answer after;
    };
    struct Split
    {
        int fileLine;
        int below; ///< the row that it is split off from
        Answer answer;
    };
    struct Refused
    {
        int fileLine;
        SheetRefusal refusal;
        QString line; ///< as the file names it: "7-1-2"
        QString cell; ///< that says nothing of use, where it is one
    };

    std::vector<Change> changes; ///< each in the order of the file
    std::vector<Split> splits;
    std::vector<Refused> refused;
    int unchanged = 0; ///< rows that leave their line as it is

    bool IsEmpty() const { return changes.empty() && splits.empty(); }

    /// True when no row of the file is about a line of the list: it is a file of another list.
    bool isOfAnotherList = false;
};

/// Compares a file with the list. Only what was edited in the file since it was written is a
/// change, so that it leaves alone what the list has got meanwhile; a file that does not tell what
/// it was written with is compared with the list itself. A cleared date is none; a column that is
/// not there leaves its part of each answer as it is.
SheetPlan PlanSheet(const Sheet &sheet, const LineList &list);

/// Makes the changes and splits of a plan for this list as if they had been typed, all to be taken
/// back in one. Returns the rows that hold them then.
RowSelection TakeSheet(const SheetPlan &plan, LineEdits &edits);
