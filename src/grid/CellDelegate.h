#pragma once

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

    SpreadGrid *m_grid;
};
