#pragma once

#include <QGlyphRun>
#include <QRawFont>
#include <QStyledItemDelegate>

class SpreadGrid;

/// Paints the cells of a grid, marks the active one, and makes the editors.
class CellDelegate : public QStyledItemDelegate
{
public:
    explicit CellDelegate(SpreadGrid *grid);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    // The grid itself decides when an edit ends.
    bool eventFilter(QObject *, QEvent *) override { return false; }

    QGlyphRun Glyphs(const QString &text, const QFont &font) const;
    void PaintLine(QPainter *painter, const QStyleOptionViewItem &option, const QString &text,
                   const QRect &room, Qt::Alignment alignment) const;

    SpreadGrid *m_grid;

    mutable QRawFont m_face;
    mutable QFont m_font; ///< of that face
};
