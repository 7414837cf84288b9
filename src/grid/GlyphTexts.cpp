#include "grid/GlyphTexts.h"

#include <QGlyphRun>
#include <QPainter>
#include <numeric>

namespace {

double WidthOf(const QList<QPointF> &advances)
{
    return std::accumulate(
        advances.begin(), advances.end(), 0.0,
        [](double width, const QPointF &advance) { return width + advance.x(); });
}

} // namespace

void GlyphTexts::SetFont(const QFont &font)
{
    if (m_face.isValid() && font == m_font)
        return;
    m_font = font;
    m_metrics = QFontMetrics(font);
    m_face = QRawFont::fromFont(font);
}

void GlyphTexts::Add(QPainter &painter, QString text, const QRect &room, Qt::Alignment alignment,
                     const QColor &color)
{
    QList<quint32> indexes = m_face.glyphIndexesForString(text);
    QList<QPointF> advances = m_face.advancesForGlyphIndexes(indexes);
    double width = indexes.contains(0) ? m_metrics.horizontalAdvance(text) : WidthOf(advances);
    if (width > room.width()) {
        text = m_metrics.elidedText(text, Qt::ElideRight, room.width());
        indexes = m_face.glyphIndexesForString(text);
        advances = m_face.advancesForGlyphIndexes(indexes);
        width = room.width();
    }
    QPointF position(room.left(), room.top() + m_metrics.ascent());
    if (alignment & Qt::AlignRight)
        position.rx() += room.width() - width;
    if (indexes.contains(0)) {
        painter.setFont(m_font);
        painter.setPen(color);
        painter.drawText(position, text);
        return;
    }
    Glyphs &glyphs = m_glyphs[color.rgba()];
    glyphs.indexes += indexes;
    for (const QPointF &advance : advances) {
        glyphs.positions += position;
        position.rx() += advance.x();
    }
}

void GlyphTexts::Draw(QPainter &painter)
{
    for (const auto &[color, glyphs] : m_glyphs) {
        QGlyphRun run;
        run.setRawFont(m_face);
        run.setGlyphIndexes(glyphs.indexes);
        run.setPositions(glyphs.positions);
        painter.setPen(QColor::fromRgba(color));
        painter.drawGlyphRun({}, run);
    }
    m_glyphs.clear();
}
