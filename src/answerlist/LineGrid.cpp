#include "answerlist/LineGrid.h"

#include "answerlist/ColumnFit.h"
#include "answerlist/ListColumns.h"
#include "lines/LineFind.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>

LineGrid::LineGrid(QWidget *parent)
    : GridView(parent)
{
    horizontalHeader()->setStretchLastSection(false);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this] { m_areColumnsFitted = m_areColumnsFitted && m_isFitting; });
    connect(this, &GridView::CellLeft, this,
            [this](int, int row, int, int newRow) { m_isFound = m_isFound && row == newRow; });
}

void LineGrid::SetLines(LineModel &lines)
{
    m_lines = &lines;
    setModel(m_lines);
    SetColumnInput(ColumnTyped(CellTyping::Quantity), std::make_unique<QuantityCellInput>());
    SetColumnInput(ColumnTyped(CellTyping::Date), std::make_unique<DateCellInput>());
    TakeFont();
}

void LineGrid::TakeFont()
{
    constexpr int LinesPerRow = 4;
    SetTextLines(LinesPerRow);
    FitColumns();
}

RowSelection LineGrid::Selected() const
{
    return m_lines->LineRows(RowSelection(SelectedRowRanges()));
}

RowSelection LineGrid::Meant() const
{
    const int active = ActiveLine();
    return m_isFound && active > 0 ? RowSelection({{active, active}}) : Selected();
}

void LineGrid::Select(const RowSelection &lineRows)
{
    SetSelectedRows(m_lines->ShownRows(lineRows).Ranges());
    m_isFound = false;
}

void LineGrid::selectAll()
{
    GridView::selectAll();
    m_isFound = false;
}

void LineGrid::SelectToo(const RowSelection &lineRows)
{
    const RowSelection selected = Selected();
    const bool isPassedBy = IsSelectionMovedTo() && !selected.IsEmpty()
                            && !m_lines->List().At(selected.First()).IsToBeSent();
    if (isPassedBy)
        clearSelection();
    if (lineRows.Count() == 1) { // as with each edit: a long selection is not made anew
        selectionModel()->select(m_lines->index(m_lines->ShownRow(lineRows.First()) - 1, 0),
                                 QItemSelectionModel::Rows | QItemSelectionModel::Select);
    } else {
        std::vector<RowSelection::Range> rows = Selected().Ranges();
        rows.insert(rows.end(), lineRows.Ranges().begin(), lineRows.Ranges().end());
        Select(RowSelection(std::move(rows)));
    }
    MeanSelection();
}

int LineGrid::ActiveLine() const
{
    return m_lines->LineRow(std::min(ActiveRow(), m_lines->rowCount()));
}

void LineGrid::GoTo(int column, int lineRow)
{
    Activate(column > 0 ? column : std::max(1, ActiveColumn()), m_lines->ShownRow(lineRow));
}

LineGrid::Place LineGrid::KeepPlace() const
{
    const LineList &list = m_lines->List();
    Place place;
    place.active = ActiveLine() > 0 ? list.At(ActiveLine()).Id() : LineId();
    place.activeRow = ActiveRow();
    place.column = std::max(1, ActiveColumn());
    place.top = verticalScrollBar()->value();
    Selected().ForEach([&](int row) {
        place.selected.push_back(list.At(row).Id());
        return true;
    });
    return place;
}

void LineGrid::RestorePlace(const Place &place)
{
    const std::vector<int> rows = m_lines->List().RowsById();
    std::vector<RowSelection::Range> selected;
    for (const LineId line : place.selected)
        if (rows[line] > 0)
            selected.emplace_back(rows[line], rows[line]);
    Select(RowSelection(std::move(selected)));
    verticalScrollBar()->setValue(place.top);
    const int count = m_lines->rowCount();
    if (count == 0)
        return;
    const int lineRow = rows[place.active];
    const int active
        = lineRow > 0 ? m_lines->ShownRowFrom(lineRow) : std::clamp(place.activeRow - 1, 1, count);
    Activate(place.column, active);
}

LineGrid::Found LineGrid::Find(const LineFind &wanted, bool isForward,
                               const ShowStatusText &showStatus)
{
    const int count = m_lines->rowCount();
    const int start = ActiveRow();
    LongWork work(showStatus, "検索しています…", count);
    for (int step = 1; step <= count && work.Step(); ++step) {
        const int row = (start - 1 + (isForward ? step : count - step) + count) % count + 1;
        if (!wanted.IsIn(m_lines->List().At(m_lines->LineRow(row))))
            continue;
        Activate(std::max(1, ActiveColumn()), row);
        m_isFound = true;
        return (isForward ? row > start : row < start) ? Found::Yes : Found::AfterTheEnd;
    }
    return work.IsStopped() ? Found::Stopped : Found::No;
}

PastePlan LineGrid::PlanPaste(const QString &text, const LineList &list) const
{
    std::vector<int> rows;
    for (int row = ActiveRow(); row <= m_lines->rowCount(); ++row)
        rows.push_back(m_lines->LineRow(row));
    std::vector<PasteColumn> columns;
    for (int column = ActiveColumn(); column <= m_lines->columnCount(); ++column) {
        const CellTyping typing = ListColumns()[size_t(column - 1)].typing;
        if (!isColumnHidden(column - 1))
            columns.push_back(typing == CellTyping::Quantity ? PasteColumn::Quantity
                              : typing == CellTyping::Date   ? PasteColumn::Date
                                                             : PasteColumn::Locked);
    }
    return ::PlanPaste(text, list, rows, columns);
}

void LineGrid::FitColumns()
{
    if (!m_lines || !m_areColumnsFitted)
        return;
    const QScopedValueRollback fitting(m_isFitting, true);
    const std::vector<int> widths
        = FitTo(NeededWidths(*m_lines, fontMetrics(), horizontalHeader()->fontMetrics()),
                viewport()->width(), fontMetrics());
    for (size_t column = 0; column < widths.size(); ++column)
        SetColumnWidth(int(column) + 1, widths[column]);
    emit ColumnsFitted();
}

void LineGrid::FitColumnsAgain()
{
    m_areColumnsFitted = true;
    FitColumns();
}

void LineGrid::changeEvent(QEvent *event)
{
    GridView::changeEvent(event);
    if (m_lines && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        TakeFont();
}

void LineGrid::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    GridView::selectionChanged(selected, deselected);
    m_isFound = false;
}

void LineGrid::resizeEvent(QResizeEvent *event)
{
    GridView::resizeEvent(event);
    FitColumns();
}
