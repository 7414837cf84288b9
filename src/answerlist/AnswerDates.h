#pragma once

#include "platform/LongWork.h"

#include <QString>

class AnswerList;

/// Setting answered dates on the list. Nothing is written to the database here.

/// True when the selection holds an open row. If not, tells the operator what is wrong with it.
bool CheckDateSelection(const AnswerList &list);

/// Gives every selected open row this answered date (stored form), as if it had been typed.
void SetAnswerDates(AnswerList &list, const QString &storedDate,
                    const ShowStatusText &showStatus = {});

/// Gives every selected open row its own specified date.
void SetSpecifiedDates(AnswerList &list, const ShowStatusText &showStatus = {});

/// Marks the row when its answered date differs from the specified one.
void UpdateDifferenceMark(AnswerList &list, int row);

/// What the status bar tells about a row: the error that the checks found, that it is shipped, or
/// nothing.
QString RowHint(const AnswerList &list, int row);

/// Asks the operator for a date. Empty when he gave none or one that the calendar lacks (told so);
/// else in stored form.
QString AskAnswerDate();
