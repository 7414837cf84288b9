#pragma once

#include <QFont>
#include <QPalette>
#include <QRawFont>
#include <map>
#include <vector>

class QModelIndex;
class QPainter;
class SpreadGrid;

/// Paints a grid's cells: their colours, the lines between them, their texts and the active cell's
/// frame. The texts of one colour are drawn in one piece.
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
    struct Glyphs
    {
        QList<quint32> indexes;
        QList<QPointF> positions; ///< in the viewport
    };

    void TakeFont();
    std::vector<Column> ColumnsIn(const QRect &area) const;
    void PaintCell(QPainter &painter, const QModelIndex &index, const QRect &cell);
    void AddTexts(QPainter &painter, const QModelIndex &index, const QRect &cell,
                  const QColor &color);
    void AddLine(QPainter &painter, QString text, const QRect &room, Qt::Alignment alignment,
                 const QColor &color);
    void DrawTexts(QPainter &painter);

    const SpreadGrid &m_grid;
    QFont m_font;
    QRawFont m_face; ///< of that font
    QPalette::ColorGroup m_group = QPalette::Normal;
    std::map<QRgb, Glyphs> m_texts; ///< gathered for the picture, by colour
};
