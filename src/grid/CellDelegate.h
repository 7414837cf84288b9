#pragma once

#include <QStyledItemDelegate>

class GridView;

/// Paints a grid's cells as the style does, with a frame around the active one, and makes their
/// editors. A text that is cut is told whole in a tooltip, and one that can be typed
/// into stands out. Colours of a cell's own stay readable whatever the palette is.
class CellDelegate : public QStyledItemDelegate
{
public:
    explicit CellDelegate(GridView *grid);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}

private:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

    // The grid itself decides when an edit ends.
    bool eventFilter(QObject *, QEvent *) override { return false; }

    GridView *m_grid;
};
