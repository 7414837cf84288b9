#include "answerlist/AnswerList.h"

#include "grid/SpreadGrid.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <algorithm>

namespace {

constexpr QRgb Silver = qRgb(0xC0, 0xC0, 0xC0); ///< shipped lines
constexpr QRgb Purple = qRgb(0x80, 0x00, 0x80); ///< lines of defective goods
constexpr int LinesPerRow = 4;
constexpr int CellMargins = 18;

/// The width that the widest line of a text takes.
int WidthOf(const QFontMetrics &metrics, const QString &text)
{
    int width = 0;
    for (const QString &line : text.split(CellLineBreak))
        width = std::max(width, metrics.horizontalAdvance(line));
    return width;
}

int At(ListColumn column)
{
    return int(column);
}

/// Changes how a whole row looks and behaves.
template <typename Change>
void StyleRow(SpreadGrid *grid, int row, Change &&change)
{
    grid->SetBlock(1, row, ListColumnCount, row);
    grid->SetBlockMode(true);
    change();
    grid->SetBlockMode(false);
}

} // namespace

void AnswerList::Create(SpreadGrid *grid)
{
    grid->SetColumnCount(ListColumnCount);
    grid->SetTextLines(LinesPerRow);
    m_spread.Create(grid);
    const QFontMetrics metrics = grid->fontMetrics();
    const QFontMetrics headingMetrics = grid->horizontalHeader()->fontMetrics();
    for (int column = 1; column <= ListColumnCount; ++column) {
        const ListColumnLook &look = LookOf(ListColumn(column));
        const QString heading = look.heading;
        m_spread.SetValue(column, 0, heading);
        const int width
            = std::max(WidthOf(metrics, look.widestText), WidthOf(headingMetrics, heading));
        grid->SetColumnLook(column, heading.isEmpty() ? 0 : width + CellMargins,
                            (look.isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop);
    }
    grid->SetColumnInput(At(ListColumn::AnswerQuantity), std::make_unique<QuantityCellInput>());
    grid->SetColumnInput(At(ListColumn::AnswerDate), std::make_unique<DateCellInput>());
}

int AnswerList::ActiveRow() const
{
    return std::min(Grid()->ActiveRow(), RowCount());
}

ListRow AnswerList::Row(int row) const
{
    return ListRow(Grid()->Model().RowText(row));
}

bool AnswerList::IsSelected(int row) const
{
    return Grid()->IsRowSelected(row);
}

int AnswerList::SelectedRowCount() const
{
    int count = 0;
    for (const auto &[first, last] : Grid()->SelectedRowRanges())
        count += last - first + 1;
    return count;
}

void AnswerList::SetCell(int row, ListColumn column, const QString &text)
{
    m_spread.SetValue(At(column), row, text);
}

void AnswerList::SetAnswerDate(int row, const QString &shownDate)
{
    Grid()->Model().SetRowText(row, WithAnswerDate(Grid()->Model().RowText(row), shownDate));
}

void AnswerList::Clear()
{
    m_spread.Clear(-1, -1, -1, -1);
    m_isIndexed = false;
}

void AnswerList::Append(const ListLine &line, bool isDefective)
{
    m_spread.AddItem(RowText(line));
    m_isIndexed = false;
    if (!line.isShipped && !isDefective)
        return;
    SpreadGrid *grid = Grid();
    StyleRow(grid, RowCount(), [&] {
        if (line.isShipped) {
            grid->SetLock(true);
            grid->SetBackColor(Silver);
        }
        if (isDefective)
            grid->SetForeColor(Purple);
    });
}

void AnswerList::InsertBelow(int row, const QString &rowText)
{
    const bool isDefective = IsDefective(row);
    m_spread.AddItem(rowText, row + 1);
    if (m_isIndexed)
        m_index.Insert(Row(row + 1).AccNo(), row + 1);
    if (isDefective)
        StyleRow(Grid(), row + 1, [this] { Grid()->SetForeColor(Purple); });
}

void AnswerList::Remove(int row)
{
    if (m_isIndexed)
        m_index.Remove(Row(row).AccNo(), row);
    m_spread.RemoveItem(row);
}

void AnswerList::Activate(int row)
{
    m_spread.ActiveCell(row, std::max(1, Grid()->ActiveColumn()));
}

bool AnswerList::IsDefective(int row) const
{
    return Grid()->Model().Style(1, row).foreColor == Purple;
}

bool AnswerList::IsLocked(int row) const
{
    return Grid()->IsLocked(At(ListColumn::AccSubNo), row);
}

std::vector<int> AnswerList::RowsOfOrder(qint64 accNo) const
{
    if (!m_isIndexed) {
        std::vector<qint64> accNos;
        accNos.reserve(size_t(RowCount()));
        for (int row = 1; row <= RowCount(); ++row)
            accNos.push_back(Row(row).AccNo());
        m_index.Build(accNos);
        m_isIndexed = true;
    }
    return m_index.Rows(accNo);
}

void AnswerList::SetRedraw(bool isOn)
{
    Grid()->SetRedraw(isOn);
}
