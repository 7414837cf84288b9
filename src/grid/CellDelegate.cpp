#include "grid/CellDelegate.h"

#include "grid/SpreadGrid.h"

#include <QPainter>
#include <utility>

namespace {

constexpr int SideMargin = 3;
constexpr int TopMargin = 1;

QPalette::ColorGroup GroupOf(QStyle::State state)
{
    if (!(state & QStyle::State_Enabled))
        return QPalette::Disabled;
    return state & QStyle::State_Active ? QPalette::Normal : QPalette::Inactive;
}

} // namespace

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

/// The text as glyphs of the font, one behind the other; none where the font lacks one of them.
QGlyphRun CellDelegate::Glyphs(const QString &text, const QFont &font) const
{
    if (!m_face.isValid() || font != m_font) {
        m_face = QRawFont::fromFont(font);
        m_font = font;
    }
    const QList<quint32> glyphs = m_face.glyphIndexesForString(text);
    if (glyphs.contains(0))
        return {};
    QList<QPointF> positions = m_face.advancesForGlyphIndexes(glyphs);
    double width = 0;
    for (QPointF &position : positions)
        width += std::exchange(position, {width, 0}).x();
    QGlyphRun run;
    run.setRawFont(m_face);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    run.setBoundingRect({0, -m_face.ascent(), width, m_face.ascent() + m_face.descent()});
    return run;
}

/// Paints one line of text; what is too wide for the room ends in "…".
void CellDelegate::PaintLine(QPainter *painter, const QStyleOptionViewItem &option,
                             const QString &text, const QRect &room, Qt::Alignment alignment) const
{
    const QGlyphRun glyphs = Glyphs(text, option.font);
    const double width = glyphs.isEmpty() ? option.fontMetrics.horizontalAdvance(text)
                                          : glyphs.boundingRect().width();
    QPointF start(room.left(), room.top() + option.fontMetrics.ascent());
    if (width > room.width()) {
        painter->drawText(start, option.fontMetrics.elidedText(text, Qt::ElideRight, room.width()));
        return;
    }
    if (alignment & Qt::AlignRight)
        start.rx() += room.width() - width;
    if (glyphs.isEmpty())
        painter->drawText(start, text);
    else
        painter->drawGlyphRun(start, glyphs);
}

void CellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    // Qt's own way lays each text out twice, to measure it and to draw it.
    painter->setFont(option.font);
    const QRect &cell = option.rect;
    const CellStyle &style = m_grid->Model().Style(index.column() + 1, index.row() + 1);
    const bool isSelected = option.state & QStyle::State_Selected;
    const auto group = GroupOf(option.state);
    if (isSelected)
        painter->fillRect(cell, option.palette.brush(group, QPalette::Highlight));
    else if (style.backColor)
        painter->fillRect(cell, QColor(*style.backColor));
    painter->setPen(isSelected        ? option.palette.color(group, QPalette::HighlightedText)
                    : style.foreColor ? QColor(*style.foreColor)
                                      : option.palette.color(group, QPalette::Text));

    const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    const QStringList lines = index.data().toString().split('\n');
    const int lineHeight = option.fontMetrics.lineSpacing();
    const int height = lineHeight * int(lines.size());
    QRect room = cell.adjusted(SideMargin, TopMargin, -SideMargin, 0);
    if (alignment & Qt::AlignVCenter)
        room.setTop(cell.top() + (cell.height() - height) / 2);
    for (const QString &line : lines) {
        if (room.top() + lineHeight > cell.bottom() + 1 && room.top() > cell.top() + TopMargin)
            break; // it would run into the next row
        if (!line.isEmpty())
            PaintLine(painter, option, line, room, alignment);
        room.translate(0, lineHeight);
    }

    if (index == m_grid->currentIndex()) {
        painter->setPen(QPen(option.palette.color(QPalette::WindowText), 2));
        painter->drawRect(cell.adjusted(1, 1, -1, -1));
    }
}
