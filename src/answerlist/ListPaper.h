#pragma once

#include "answerlist/PaperTable.h"
#include "lines/LineList.h"
#include "lines/RowSelection.h"

#include <vector>

/// Rows of the list as they stand, on paper. `about` is whose list it is.
PaperTable ListPaper(const LineList &list, const RowSelection &rows, const QString &about);

/// The answers of these lines, as a sheet to keep.
PaperTable AnswersPaper(const std::vector<Line> &lines, const QString &about);
