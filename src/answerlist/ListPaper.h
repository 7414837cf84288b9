#pragma once

#include "answerlist/PaperTable.h"
#include "lines/LineList.h"
#include "lines/RowSelection.h"

/// Rows of the list as they stand, on paper. `about` is whose list it is.
PaperTable ListPaper(const LineList &list, const RowSelection &rows, const QString &about);

/// The answers of these rows, as a sheet to keep.
PaperTable AnswersPaper(const LineList &list, const RowSelection &rows, const QString &about);
