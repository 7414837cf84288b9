#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"

#include <functional>

/// The most lines that a workbook's sheet has room for, below its headings.
inline constexpr int MostXlsxLines = 1'048'575;

enum class XlsxResult { Written, Stopped, Failed };

/// Writes rows of the list as an Excel workbook (a file that is there is replaced): headings that
/// stay in view, dates and numbers as such, every cell locked but those to be filled in, which are
/// coloured, and the rows below, where splits may be added. `step` is called for each row and
/// stops the work with False. Needs the memory of few rows only.
XlsxResult WriteXlsx(const LineList &list, const RowSelection &rows, const QString &localPath,
                     const std::function<bool()> &step);
