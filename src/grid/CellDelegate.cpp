#include "grid/CellDelegate.h"

#include "grid/GridView.h"
#include "platform/Contrast.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {

/// The background with a breath of another colour.
QColor Mixed(const QColor &background, const QColor &other)
{
    constexpr float Part = 0.12F;
    const auto mixed = [](float one, float two) { return one + (two - one) * Part; };
    return QColor::fromRgbF(mixed(background.redF(), other.redF()),
                            mixed(background.greenF(), other.greenF()),
                            mixed(background.blueF(), other.blueF()));
}

QColor BackgroundOf(const QStyleOptionViewItem &option)
{
    return option.backgroundBrush.style() == Qt::NoBrush ? option.palette.color(QPalette::Base)
                                                         : option.backgroundBrush.color();
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
    const QColor base = option->palette.color(QPalette::Base);
    if (option->backgroundBrush.style() == Qt::NoBrush
        && index.flags().testFlag(Qt::ItemIsEditable))
        option->backgroundBrush = Mixed(base, option->palette.color(QPalette::Highlight));
    const QColor background = BackgroundOf(*option);
    option->palette.setColor(QPalette::Text,
                             Readable(option->palette.color(QPalette::Text), background));
    option->palette.setColor(QPalette::Highlight,
                             Readable(option->palette.color(QPalette::Highlight),
                                      option->palette.color(QPalette::HighlightedText)));
}

void CellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (index != m_grid->currentIndex())
        return;
    QStyleOptionViewItem shown = option;
    initStyleOption(&shown, index);
    const bool isSelected = shown.state & QStyle::State_Selected;
    painter->save();
    painter->setPen(
        QPen(Readable(shown.palette.color(QPalette::WindowText),
                      isSelected ? shown.palette.color(QPalette::Highlight) : BackgroundOf(shown)),
             2));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    painter->restore();
}

QWidget *CellDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                    const QModelIndex &index) const
{
    return m_grid->BeginEdit(parent, index);
}

/// Over the first line of the cell's text.
void CellDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                        const QModelIndex &) const
{
    QRect line = option.rect;
    line.setHeight(std::min(line.height(), editor->sizeHint().height()));
    editor->setGeometry(line);
}

bool CellDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                             const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const QString text = index.data().toString();
    if (event->type() == QEvent::ToolTip && index.data(Qt::ToolTipRole).isNull()
        && sizeHint(option, index).width() > option.rect.width()) {
        QToolTip::showText(event->globalPos(), text, view);
        return true;
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
}
