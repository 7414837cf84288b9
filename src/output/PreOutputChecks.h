#pragma once

#include "platform/LongWork.h"

class AnswerList;

/// Checks the answers on the list before anything is registered or written. Stops at the first row
/// in error: its text goes into the row, which becomes the active one. `participants` receives the
/// number of rows that take part.
bool RunPreOutputChecks(AnswerList &list, const ShowStatusText &showStatus, int &participants);
