#include "grid/SpreadGrid.h"

#include "grid/CellDelegate.h"

#include <QHeaderView>
#include <algorithm>

SpreadGrid::SpreadGrid(QWidget *parent)
    : QTableView(parent)
{
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setModel(&m_model);
    setItemDelegate(new CellDelegate(this));
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectItems);
    setEditTriggers(EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->setHighlightSections(true);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setMinimumSectionSize(24);
    horizontalHeader()->setStretchLastSection(true);

    // A press on a heading leaves a cell in edit as one on another cell does.
    for (QHeaderView *header : {horizontalHeader(), verticalHeader()})
        header->viewport()->installEventFilter(this);

    const auto forgetSelection = [this] { m_isSelectionKnown = false; };
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, forgetSelection);
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, forgetSelection);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, forgetSelection);
    connect(&m_model, &QAbstractItemModel::modelReset, this, forgetSelection);
}

void SpreadGrid::SetCurrentCell(int column, int row)
{
    m_current = {column, row};
}

QString SpreadGrid::Text() const
{
    return m_current.row == 0 ? m_model.Heading(m_current.column)
                              : m_model.Text(m_current.column, m_current.row);
}

void SpreadGrid::SetText(const QString &text)
{
    if (m_current.row == 0)
        m_model.SetHeading(m_current.column, text);
    else
        m_model.SetText(m_current.column, m_current.row, text);
}

void SpreadGrid::SetBlock(int column1, int row1, int column2, int row2)
{
    m_block = {column1, row1, column2, row2};
}

SpreadGrid::Block SpreadGrid::Target() const
{
    if (m_isBlockMode)
        return m_block;
    return {m_current.column, m_current.row, m_current.column, m_current.row};
}

void SpreadGrid::SetClip(const QString &text)
{
    const auto [column1, row1, column2, row2] = m_block;
    const bool isWholeRow = column1 == 1 && column2 == ColumnCount();
    if (isWholeRow && row1 == row2 && text.count('\t') < ColumnCount()) {
        m_model.SetRowText(row1, text);
        return;
    }
    const QStringList lines = row1 == row2 ? QStringList(text) : text.split("\r\n");
    for (int row = row1; row <= row2 && row - row1 < lines.size(); ++row) {
        const QString &line = lines[row - row1];
        if (isWholeRow && line.count('\t') < ColumnCount()) {
            m_model.SetRowText(row, line);
            continue;
        }
        const QStringList cells = line.split('\t');
        for (int column = column1; column <= column2 && column - column1 < cells.size(); ++column)
            m_model.SetText(column, row, cells[column - column1]);
    }
}

void SpreadGrid::Perform(Action action)
{
    const Block block = Target();
    switch (action) {
    case Action::ActivateCell: {
        const QModelIndex cell = m_model.index(m_current.row - 1, m_current.column - 1);
        selectionModel()->setCurrentIndex(cell, m_isRowMode ? QItemSelectionModel::ClearAndSelect
                                                                  | QItemSelectionModel::Rows
                                                            : QItemSelectionModel::NoUpdate);
        scrollTo(cell);
        break;
    }
    case Action::DeleteRows:
        m_model.DeleteRows(block.row1, block.row2);
        break;
    case Action::InsertRow:
        m_model.InsertRow(block.row1);
        break;
    case Action::ClearText:
        ClearBlockText(block);
        break;
    case Action::CopyBlock:
        CopyBlock(block);
        break;
    case Action::Draw:
        viewport()->update();
        break;
    }
}

void SpreadGrid::ClearBlockText(const Block &block)
{
    const bool isWholeRow = block.column1 == 1 && block.column2 == ColumnCount();
    for (int row = block.row1; row <= block.row2; ++row) {
        if (m_model.RowText(row).isEmpty())
            continue;
        if (isWholeRow) {
            m_model.SetRowText(row, {});
            continue;
        }
        for (int column = block.column1; column <= block.column2; ++column)
            m_model.SetText(column, row, {});
    }
}

void SpreadGrid::CopyBlock(const Block &block)
{
    const int rowShift = m_destination.row - block.row1;
    const int columnShift = m_destination.column - block.column1;
    for (int row = block.row1; row <= block.row2; ++row) {
        for (int column = block.column1; column <= block.column2; ++column) {
            const int toRow = row + rowShift;
            const int toColumn = column + columnShift;
            const CellStyle style = m_model.Style(column, row);
            m_model.SetText(toColumn, toRow, m_model.Text(column, row));
            m_model.ChangeStyles(toColumn, toRow, toColumn, toRow,
                                 [&](CellStyle &target) { target = style; });
        }
    }
}

double SpreadGrid::RowHeight() const
{
    return verticalHeader()->defaultSectionSize();
}

void SpreadGrid::SetRowHeight(int, double height)
{
    // All rows are equally high, so that a million of them need no measuring.
    if (int(height) > 0 && int(height) != verticalHeader()->defaultSectionSize())
        verticalHeader()->setDefaultSectionSize(int(height));
}

void SpreadGrid::SetRedraw(bool isOn)
{
    m_model.SetNotifying(isOn);
    if (isOn)
        executeDelayedItemsLayout(); // else a first picture would be painted with the old one
    // The headings stay as they are.
    viewport()->setUpdatesEnabled(isOn);
    verticalHeader()->setUpdatesEnabled(isOn);
}

void SpreadGrid::SetForeColor(QRgb color)
{
    const auto [column1, row1, column2, row2] = Target();
    m_model.ChangeStyles(column1, row1, column2, row2,
                         [color](CellStyle &style) { style.foreColor = color; });
}

void SpreadGrid::SetBackColor(QRgb color)
{
    const auto [column1, row1, column2, row2] = Target();
    m_model.ChangeStyles(column1, row1, column2, row2,
                         [color](CellStyle &style) { style.backColor = color; });
}

void SpreadGrid::SetLock(bool isLocked)
{
    const auto [column1, row1, column2, row2] = Target();
    m_model.ChangeStyles(column1, row1, column2, row2,
                         [isLocked](CellStyle &style) { style.isLocked = isLocked; });
}

void SpreadGrid::SetComboEntries(const QStringList &entries)
{
    const auto [column1, row1, column2, row2] = Target();
    m_model.ChangeStyles(column1, row1, column2, row2,
                         [&](CellStyle &style) { style.comboEntries = entries; });
}

QStringList SpreadGrid::ComboEntries() const
{
    return m_model.Style(m_current.column, m_current.row).comboEntries.value_or(QStringList());
}

int SpreadGrid::ComboIndex() const
{
    return int(ComboEntries().indexOf(Text()));
}

void SpreadGrid::SetComboIndex(int index)
{
    SetText(ComboEntries().value(index));
}

const std::vector<std::pair<int, int>> &SpreadGrid::SelectedRowRanges() const
{
    if (m_isSelectionKnown)
        return m_selectedRows;
    std::vector<std::pair<int, int>> ranges;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        ranges.emplace_back(range.top() + 1, range.bottom() + 1);
    std::sort(ranges.begin(), ranges.end());
    m_selectedRows.clear();
    for (const auto &range : ranges) {
        if (m_selectedRows.empty() || range.first > m_selectedRows.back().second + 1)
            m_selectedRows.push_back(range);
        else
            m_selectedRows.back().second = std::max(m_selectedRows.back().second, range.second);
    }
    m_isSelectionKnown = true;
    return m_selectedRows;
}

bool SpreadGrid::IsRowSelected(int row) const
{
    const auto &ranges = SelectedRowRanges();
    const auto after
        = std::upper_bound(ranges.begin(), ranges.end(), row,
                           [](int value, const auto &range) { return value < range.first; });
    return after != ranges.begin() && row <= std::prev(after)->second;
}

void SpreadGrid::SetLineStyle(int style)
{
    setShowGrid(style != 0);
    setGridStyle(style == 2 ? Qt::DotLine : Qt::SolidLine);
}

void SpreadGrid::SetColumnInput(int column, std::unique_ptr<CellInput> input)
{
    m_model.SetEditable(column, input != nullptr);
    m_inputs[column] = std::move(input);
}

void SpreadGrid::SetColumnLook(int column, int width, Qt::Alignment alignment)
{
    m_model.SetAlignment(column, alignment);
    setColumnHidden(column - 1, width == 0);
    if (width > 0)
        setColumnWidth(column - 1, width);
}

void SpreadGrid::SetTextLines(int lines)
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() * lines + 8);
}

void SpreadGrid::SetRowMode()
{
    m_isRowMode = true;
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
}

QString SpreadGrid::SelectedText() const
{
    QItemSelection selection = selectionModel()->selection();
    if (selection.isEmpty() && currentIndex().isValid())
        selection.select(currentIndex(), currentIndex());
    int firstColumn = ColumnCount();
    int lastColumn = 1;
    for (const QItemSelectionRange &range : selection) {
        firstColumn = std::min(firstColumn, range.left() + 1);
        lastColumn = std::max(lastColumn, range.right() + 1);
    }
    const bool isOneBlock = std::ranges::all_of(selection, [&](const auto &range) {
        return range.left() + 1 == firstColumn && range.right() + 1 == lastColumn;
    });
    std::vector<std::pair<int, int>> rows = SelectedRowRanges();
    if (rows.empty() && currentIndex().isValid())
        rows.emplace_back(ActiveRow(), ActiveRow());

    QString text;
    for (const auto &[first, last] : rows) {
        for (int row = first; row <= last; ++row) {
            QStringList cells;
            for (int column = firstColumn; column <= lastColumn; ++column) {
                if (isColumnHidden(column - 1))
                    continue;
                const bool isTaken
                    = isOneBlock || selection.contains(m_model.index(row - 1, column - 1));
                QString cell = isTaken ? m_model.Text(column, row) : QString();
                if (cell.contains('\r') || cell.contains('\n') || cell.contains('"'))
                    cell = '"' + cell.replace("\r\n", "\n").replace('"', "\"\"") + '"';
                cells += cell;
            }
            text += cells.join('\t') + '\n';
        }
    }
    return text;
}
