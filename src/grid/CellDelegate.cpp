#include "grid/CellDelegate.h"

#include "grid/GridView.h"

#include <QPainter>
#include <algorithm>

namespace {

/// The text's colour, made lighter or darker as far as it takes to be read on that background.
QColor Readable(const QColor &text, const QColor &background)
{
    constexpr int LeastDifference = 80; // of 255 steps of grey
    const int grey = qGray(background.rgb());
    if (std::abs(qGray(text.rgb()) - grey) >= LeastDifference)
        return text;
    constexpr int Middle = 128;
    const int lightness = grey < Middle ? grey + 150 : grey - 150;
    return QColor::fromHsl(std::max(text.hslHue(), 0), text.hslSaturation(),
                           std::clamp(lightness, 0, 255));
}

} // namespace

CellDelegate::CellDelegate(GridView *grid)
    : QStyledItemDelegate(grid)
    , m_grid(grid)
{
}

void CellDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->state &= ~QStyle::State_HasFocus; // the frame shows it
    const QColor background = option->backgroundBrush.style() == Qt::NoBrush
                                  ? option->palette.color(QPalette::Base)
                                  : option->backgroundBrush.color();
    option->palette.setColor(QPalette::Text,
                             Readable(option->palette.color(QPalette::Text), background));
}

void CellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (index != m_grid->currentIndex())
        return;
    painter->save();
    painter->setPen(QPen(option.palette.color(QPalette::WindowText), 2));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    painter->restore();
}

QWidget *CellDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                    const QModelIndex &index) const
{
    return m_grid->BeginEdit(parent, index);
}
