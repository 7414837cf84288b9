#include "grid/CellPainter.h"

#include "grid/SpreadGrid.h"

#include <QPainter>
#include <utility>

namespace {

constexpr int SideMargin = 3;
constexpr int TopMargin = 1;

QPalette::ColorGroup GroupOf(const QWidget &widget)
{
    if (!widget.isEnabled())
        return QPalette::Disabled;
    return widget.isActiveWindow() ? QPalette::Normal : QPalette::Inactive;
}

QBrush LineBrush(const SpreadGrid &grid)
{
    return {grid.LineColor(),
            grid.gridStyle() == Qt::DotLine ? Qt::Dense4Pattern : Qt::SolidPattern};
}

} // namespace

CellPainter::CellPainter(const SpreadGrid &grid)
    : m_grid(grid)
{
}

void CellPainter::Paint(QPainter &painter, const QRect &area)
{
    m_texts.SetFont(m_grid.font());
    m_group = GroupOf(m_grid);
    const std::vector<Column> columns = ColumnsIn(area);
    int row = m_grid.rowAt(area.top());
    if (row < 0 || columns.empty())
        return;

    const int lineWidth = m_grid.showGrid() ? 1 : 0;
    const int left = columns.front().left;
    const int right = columns.back().left + columns.back().width;
    const QBrush line = LineBrush(m_grid);
    int bottom = m_grid.rowViewportPosition(row);
    for (; row < m_grid.model()->rowCount() && bottom <= area.bottom(); ++row) {
        const int top = std::exchange(bottom, bottom + m_grid.rowHeight(row));
        for (const Column &column : columns)
            PaintCell(painter, m_grid.model()->index(row, column.index),
                      {column.left, top, column.width - lineWidth, bottom - top - lineWidth});
        painter.fillRect(left, bottom - lineWidth, right - left, lineWidth, line);
    }
    for (const Column &column : columns)
        painter.fillRect(column.left + column.width - lineWidth, area.top(), lineWidth,
                         bottom - area.top(), line);
    m_texts.Draw(painter);

    const QRect active = m_grid.visualRect(m_grid.currentIndex());
    if (active.intersects(area)) {
        painter.setPen(QPen(m_grid.palette().color(QPalette::WindowText), 2));
        painter.drawRect(active.adjusted(1, 1, -1, -1));
    }
}

std::vector<CellPainter::Column> CellPainter::ColumnsIn(const QRect &area) const
{
    std::vector<Column> columns;
    for (int index = 0; index < m_grid.ColumnCount(); ++index) {
        const int left = m_grid.columnViewportPosition(index);
        const int width = m_grid.columnWidth(index); // 0 where the column is hidden
        if (width > 0 && left <= area.right() && left + width > area.left())
            columns.push_back({index, left, width});
    }
    return columns;
}

void CellPainter::PaintCell(QPainter &painter, const QModelIndex &index, const QRect &cell)
{
    const CellStyle &style = m_grid.Model().Style(index.column() + 1, index.row() + 1);
    const QPalette &palette = m_grid.palette();
    if (m_grid.selectionModel()->isSelected(index)) {
        painter.fillRect(cell, palette.brush(m_group, QPalette::Highlight));
        AddTexts(painter, index, cell, palette.color(m_group, QPalette::HighlightedText));
        return;
    }
    if (style.backColor)
        painter.fillRect(cell, QColor(*style.backColor));
    AddTexts(painter, index, cell,
             style.foreColor ? QColor(*style.foreColor) : palette.color(m_group, QPalette::Text));
}

void CellPainter::AddTexts(QPainter &painter, const QModelIndex &index, const QRect &cell,
                           const QColor &color)
{
    const Qt::Alignment alignment = m_grid.Model().Alignment(index.column() + 1);
    const QStringList lines
        = m_grid.Model().ShownText(index.column() + 1, index.row() + 1).split('\n');
    const int lineHeight = m_grid.fontMetrics().lineSpacing();
    QRect room = cell.adjusted(SideMargin, TopMargin, -SideMargin, 0);
    if (alignment & Qt::AlignVCenter)
        room.setTop(cell.top() + (cell.height() - lineHeight * int(lines.size())) / 2);
    for (const QString &line : lines) {
        if (room.top() + lineHeight > cell.bottom() + 1 && room.top() > cell.top() + TopMargin)
            break; // it would run into the next row
        if (!line.isEmpty())
            m_texts.Add(painter, line, room, alignment, color);
        room.translate(0, lineHeight);
    }
}
