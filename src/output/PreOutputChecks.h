#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"
#include "platform/LongWork.h"

/// What the checks before the output found.
struct CheckResult
{
    bool isPassed = false;
    int participants = 0; ///< rows that take part
    int failedRow = 0;    ///< the row whose line has the error; 0: none
};

/// Checks the answers on the list before anything is registered or written. Stops at the first row
/// in error: the error goes into its line. Where no row takes part, message 22 is shown.
CheckResult RunPreOutputChecks(LineList &list, const RowSelection &selected,
                               const ShowStatusText &showStatus);
