#pragma once

#include "data/ProgramState.h"
#include "lines/LineList.h"
#include "platform/LongWork.h"

/// What loading the list brought.
struct LoadedList
{
    bool isRead = false;    ///< False after a database error, which has been shown, or a stop
    bool isStopped = false; ///< by the operator; the list is then empty
    int lineCount = 0;
    bool hasDefectiveLines = false;
};

/// Fills the list with the lines that the search conditions select, one row each, in the query's
/// order. The operator can stop it.
LoadedList LoadList(bDAO &db, const SearchConditions &conditions, LineList &list,
                    const ShowStatusText &showStatus = {});

/// Reads all live lines of these orders as they are stored now. False after a database error, which
/// has been shown (within a transaction: is shown when it ends).
bool ReadOrders(bDAO &db, const std::vector<qint64> &accNos, LineList &lines);

/// The status text while the list is loaded.
inline constexpr auto LoadingText = "該当データを表示しています･･･";
