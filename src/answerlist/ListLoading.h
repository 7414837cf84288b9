#pragma once

#include "data/ProgramState.h"

class AnswerList;

/// What loading the list brought.
struct LoadedList
{
    bool isRead = false; ///< False after a database error, which has been shown
    int lineCount = 0;
    bool hasDefectiveLines = false;
};

/// Fills the list with the lines that the search conditions select, one row each, in the query's
/// order.
LoadedList LoadList(bDAO &db, const SearchConditions &conditions, AnswerList &list);

/// The name of the date that the search's range is about.
QString DateBasisName(const QString &basis);
