#pragma once

#include "lines/LineEdits.h"

class bDAO;

/// Splitting lines into partial deliveries, and taking a split back.

/// True when not more than one row is selected; tells the operator when more are.
bool CheckSingleRow(const RowSelection &selected);

/// The row that copy and delete work on: the one that is selected. 0, and the operator has been
/// told why, when none or several are.
int SingleRow(const RowSelection &selected);

/// What is left to answer of a row's order sub-line: the instructed quantity of the row less the
/// answers of all rows of the sub-line.
Decimal RemainderOf(const LineList &list, int row);

/// Adds a split of the row below it.
void CopyLine(LineEdits &edits, int row);

/// Takes a split line back from the database, after asking. True when its row is to go, too: at
/// once for one that is not stored yet. Else the operator has been told why, or has said no.
bool DeleteLine(bDAO &db, const Line &line);
