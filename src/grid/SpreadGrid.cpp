#include "grid/SpreadGrid.h"

#include <QHeaderView>
#include <algorithm>

SpreadGrid::SpreadGrid(QWidget *parent)
    : GridView(parent)
{
    setModel(&m_model);
}

bool SpreadGrid::IsInside(int column, int row) const
{
    return column >= 1 && column <= ColumnCount() && row >= 0 && row <= RowCount();
}

void SpreadGrid::SetCurrentCell(int column, int row)
{
    m_current = {column, row};
}

QString SpreadGrid::Text() const
{
    if (!IsInside(m_current.column, m_current.row))
        return {};
    return m_current.row == 0 ? m_model.Heading(m_current.column)
                              : m_model.Text(m_current.column, m_current.row);
}

void SpreadGrid::SetText(const QString &text)
{
    if (!IsInside(m_current.column, m_current.row))
        return;
    if (m_current.row == 0)
        m_model.SetHeading(m_current.column, text);
    else
        m_model.SetText(m_current.column, m_current.row, text);
}

void SpreadGrid::SetBlock(int column1, int row1, int column2, int row2)
{
    m_block = {column1, row1, column2, row2};
}

SpreadGrid::Block SpreadGrid::Inside(const Block &block) const
{
    return {std::max(block.column1, 1), std::max(block.row1, 1),
            std::min(block.column2, ColumnCount()), std::min(block.row2, RowCount())};
}

SpreadGrid::Block SpreadGrid::Target() const
{
    return Inside(m_isBlockMode
                      ? m_block
                      : Block{m_current.column, m_current.row, m_current.column, m_current.row});
}

void SpreadGrid::SetClip(const QString &text)
{
    const auto [column1, row1, column2, row2] = Inside(m_block);
    if (row1 > row2)
        return;
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
    const bool isEmpty = block.row1 > block.row2 || block.column1 > block.column2;
    if (isEmpty && action != Action::Draw)
        return;
    switch (action) {
    case Action::ActivateCell:
        Activate(m_current.column, m_current.row);
        break;
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
            if (toRow < 1 || !IsInside(toColumn, toRow))
                continue;
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

bool SpreadGrid::IsLocked(int column, int row) const
{
    return row > 0 && IsInside(column, row) && m_model.Style(column, row).isLocked;
}

const CellStyle *SpreadGrid::CurrentStyle() const
{
    const bool isCell = m_current.row > 0 && IsInside(m_current.column, m_current.row);
    return isCell ? &m_model.Style(m_current.column, m_current.row) : nullptr;
}

QStringList SpreadGrid::ComboEntries() const
{
    const CellStyle *style = CurrentStyle();
    return style ? style->comboEntries.value_or(QStringList()) : QStringList();
}

int SpreadGrid::ComboIndex() const
{
    return int(ComboEntries().indexOf(Text()));
}

void SpreadGrid::SetComboIndex(int index)
{
    if (const CellStyle *style = CurrentStyle(); style && style->comboEntries)
        SetText(style->comboEntries->value(index));
}

void SpreadGrid::SetLineStyle(int style)
{
    setShowGrid(style != 0);
    setGridStyle(style == 2 ? Qt::DotLine : Qt::SolidLine);
}

void SpreadGrid::SetColumnLook(int column, int width, Qt::Alignment alignment)
{
    m_model.SetAlignment(column, alignment);
    SetColumnWidth(column, width);
}
