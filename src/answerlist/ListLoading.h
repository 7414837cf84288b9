#pragma once

#include "data/ProgramState.h"
#include "platform/LongWork.h"

class AnswerList;

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
LoadedList LoadList(bDAO &db, const SearchConditions &conditions, AnswerList &list,
                    const ShowStatusText &showStatus = {});

/// The status text while the list is loaded.
inline constexpr auto LoadingText = "該当データを表示しています･･･";

/// The name of the date that the search's range is about.
QString DateBasisName(const QString &basis);
