#pragma once

#include "lines/LineEdits.h"
#include "platform/LongWork.h"

/// Setting answered dates on the list. Nothing is written to the database here.

/// True when the selection holds an open row. If not, tells the operator what is wrong with it.
bool CheckDateSelection(const LineList &list, const RowSelection &selected);

/// Gives every selected open row this answered date (stored form), as if it had been typed. Returns
/// the number of rows that had another one.
int SetAnswerDates(LineEdits &edits, const RowSelection &selected, const QString &storedDate,
                   const ShowStatusText &showStatus = {});

/// Gives every selected open row its own specified date; returns the same.
int SetSpecifiedDates(LineEdits &edits, const RowSelection &selected,
                      const ShowStatusText &showStatus = {});

/// Asks the operator for a date. Empty when he gave none or one that the calendar lacks (told so);
/// else in stored form.
QString AskAnswerDate();
