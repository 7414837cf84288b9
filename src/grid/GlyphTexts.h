#pragma once

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QRawFont>
#include <map>

class QPainter;

/// Lines of text gathered for a picture and drawn in one piece for each colour.
class GlyphTexts
{
public:
    /// The font of the texts to come; none may be gathered and not yet drawn.
    void SetFont(const QFont &font);

    /// Adds one line of text at the top of a room; what is too wide for it ends in "…". A text with
    /// a character that the font lacks is drawn at once, for Qt to find another font.
    void Add(QPainter &painter, QString text, const QRect &room, Qt::Alignment alignment,
             const QColor &color);

    /// Draws the texts gathered and forgets them.
    void Draw(QPainter &painter);

private:
    struct Glyphs
    {
        QList<quint32> indexes;
        QList<QPointF> positions; ///< in the painter's coordinates
    };

    QFont m_font;
    QFontMetrics m_metrics{m_font};
    QRawFont m_face; ///< of that font
    std::map<QRgb, Glyphs> m_glyphs;
};
