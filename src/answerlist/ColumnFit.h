#pragma once

#include <vector>

class QAbstractItemModel;
class QFontMetrics;

/// The width in pixels that each column of the answer list takes: of its heading and of the longest
/// texts found in a sample of its rows.
std::vector<int> NeededWidths(const QAbstractItemModel &model, const QFontMetrics &cells,
                              const QFontMetrics &headings);

/// The same with the column of the names as wide as the others leave it in a room of this width,
/// but never too narrow to be of use.
std::vector<int> FitTo(std::vector<int> needed, int room, const QFontMetrics &cells);
