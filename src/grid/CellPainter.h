#pragma once

#include "grid/GlyphTexts.h"

#include <QPalette>
#include <vector>

class QModelIndex;
class QPainter;
class SpreadGrid;

/// Paints a grid's cells: their colours, the lines between them, their texts and the active cell's
/// frame.
class CellPainter
{
public:
    explicit CellPainter(const SpreadGrid &grid);

    /// Paints the part of the viewport that `area` covers.
    void Paint(QPainter &painter, const QRect &area);

private:
    struct Column
    {
        int index;
        int left;
        int width;
    };

    std::vector<Column> ColumnsIn(const QRect &area) const;
    void PaintCell(QPainter &painter, const QModelIndex &index, const QRect &cell);
    void AddTexts(QPainter &painter, const QModelIndex &index, const QRect &cell,
                  const QColor &color);

    const SpreadGrid &m_grid;
    GlyphTexts m_texts;
    QPalette::ColorGroup m_group = QPalette::Normal;
};
