#pragma once

#include <QStyledItemDelegate>

class SpreadGrid;

/// Makes the editors of a grid's cells.
class CellDelegate : public QStyledItemDelegate
{
public:
    explicit CellDelegate(SpreadGrid *grid);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}

private:
    // The grid itself decides when an edit ends.
    bool eventFilter(QObject *, QEvent *) override { return false; }

    SpreadGrid *m_grid;
};
