#include "grid/CellDelegate.h"

#include "grid/SpreadGrid.h"

CellDelegate::CellDelegate(SpreadGrid *grid)
    : QStyledItemDelegate(grid)
    , m_grid(grid)
{
}

QWidget *CellDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                    const QModelIndex &index) const
{
    return m_grid->BeginEdit(parent, index);
}
