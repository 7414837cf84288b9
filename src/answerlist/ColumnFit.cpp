#include "answerlist/ColumnFit.h"

#include "answerlist/ListColumns.h"

#include <QAbstractItemModel>
#include <QFontMetrics>
#include <algorithm>
#include <numeric>

namespace {

constexpr int CellMargins = 18;
constexpr int HeadingIcon = 22;
constexpr size_t NamesColumn = 1;

int WidthOf(const QFontMetrics &metrics, const QString &text)
{
    int width = 0;
    for (const QString &line : text.split('\n'))
        width = std::max(width, metrics.horizontalAdvance(line));
    return width;
}

/// About how wide a text's widest line is, in half-width characters.
int Cells(const QString &text)
{
    int widest = 0;
    int cells = 0;
    for (const QChar c : text) {
        const bool isHalf = c < QChar(0x300) || (c >= QChar(0xFF61) && c <= QChar(0xFF9F));
        cells = c == '\n' ? 0 : cells + (isHalf ? 1 : 2);
        widest = std::max(widest, cells);
    }
    return widest;
}

/// The text of a column that is probably the widest.
QString WidestText(const QAbstractItemModel &model, int column)
{
    constexpr int Sample = 2000;
    const int rows = model.rowCount();
    QString widest;
    int widestCells = 0;
    for (int row = 0; row < rows; row += std::max(1, rows / Sample)) {
        const QString text = model.index(row, column).data().toString();
        if (const int cells = Cells(text); cells > widestCells) {
            widestCells = cells;
            widest = text;
        }
    }
    return widest;
}

} // namespace

std::vector<int> NeededWidths(const QAbstractItemModel &model, const QFontMetrics &cells,
                              const QFontMetrics &headings)
{
    std::vector<int> widths;
    for (int column = 0; column < model.columnCount(); ++column) {
        const ListColumn &entry = ListColumns()[size_t(column)];
        const int heading = WidthOf(headings, model.headerData(column, Qt::Horizontal).toString())
                            + (entry.typing == CellTyping::No ? 0 : HeadingIcon);
        widths.push_back(std::max({heading, WidthOf(cells, WidestText(model, column)),
                                   WidthOf(cells, entry.leastText)})
                         + CellMargins);
    }
    return widths;
}

std::vector<int> FitTo(std::vector<int> needed, int room, const QFontMetrics &cells)
{
    constexpr auto ShortestNames = "積層セラミックコンデンサ";
    const int others = std::accumulate(needed.begin(), needed.end(), 0) - needed[NamesColumn];
    needed[NamesColumn] = std::max(cells.horizontalAdvance(ShortestNames), room - others);
    return needed;
}
