#pragma once

#include "util/Decimal.h"

class AnswerList;
class bDAO;

/// Splitting lines into partial deliveries, and taking a split back.

/// True when not more than one row is selected; tells the operator when more are.
bool CheckSingleRow(const AnswerList &list);

/// The row that copy and delete work on: the active one, with not more than one row selected. 0,
/// and message 22, when none is selected.
int SingleRow(const AnswerList &list);

/// What is left to answer of a row's order sub-line: the instructed quantity of the row less the
/// answered quantities of all rows of the sub-line.
Decimal RemainderOf(const AnswerList &list, int row);

/// Adds a split of the row below it.
void CopyLine(AnswerList &list, int row);

/// Takes a split line back, after asking: from the database, if it is stored there, and from the
/// list. False when it was refused, not confirmed or failed; the operator has been told why.
bool DeleteLine(bDAO &db, AnswerList &list, int row);
