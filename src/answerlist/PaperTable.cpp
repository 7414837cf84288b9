#include "answerlist/PaperTable.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPen>
#include <algorithm>

namespace {

constexpr double TitlePoints = 13;
constexpr double TextPoints = 8;

/// A size of the application's font.
QFont FontOf(double points, bool isBold = false)
{
    QFont font = QGuiApplication::font();
    font.setPointSizeF(points);
    font.setBold(isBold);
    return font;
}

int LineCount(const QString &text)
{
    return int(text.count('\n')) + 1;
}

/// Where everything stands on a page, in the device's own pixels.
struct PageLayout
{
    PageLayout(const PaperTable &table, const QPagedPaintDevice &device);

    QSizeF page;
    double line;
    double padding; ///< above and below
    double gap;     ///< on either side
    double top;     ///< of the headings
    double headingHeight;
    double rowHeight;
    double footTop;
    int rowsPerPage;
    std::vector<double> lefts; ///< of each column, and the right edge
};

PageLayout::PageLayout(const PaperTable &table, const QPagedPaintDevice &device)
    : page(device.pageLayout().paintRectPixels(device.logicalDpiX()).size())
    , line(QFontMetricsF(FontOf(TextPoints), &device).lineSpacing())
    , padding(line / 4)
    , gap(line / 3)
{
    top = QFontMetricsF(FontOf(TitlePoints), &device).lineSpacing() + line + 2 * padding;
    int headingLines = 1;
    double shares = 0;
    for (const PaperTable::Column &column : table.columns) {
        headingLines = std::max(headingLines, LineCount(column.heading));
        shares += column.share;
    }
    headingHeight = headingLines * line + 2 * padding;
    rowHeight = table.linesPerRow * line + 2 * padding;
    footTop = page.height() - line;
    rowsPerPage = std::max(1, int((footTop - padding - top - headingHeight) / rowHeight));
    double left = 0;
    for (const PaperTable::Column &column : table.columns) {
        lefts.push_back(left);
        left += page.width() * column.share / shares;
    }
    lefts.push_back(page.width());
}

/// Prints one table, page by page.
class Printing
{
public:
    Printing(const PaperTable &table, QPagedPaintDevice &device)
        : m_table(table)
        , m_layout(table, device)
        , m_device(device)
        , m_painter(&device)
        , m_pages(table.PageCount(device))
    {
    }

    bool Print(const std::function<bool()> &step);

private:
    void PrintFrame(int page);
    void PrintRow(int row, double top);
    void PrintCell(const QString &text, size_t column, double top);
    void PrintLine(QString line, const QRectF &place, int alignment);

    const PaperTable &m_table;
    const PageLayout m_layout;
    QPagedPaintDevice &m_device;
    QPainter m_painter;
    const int m_pages;
};

/// A line that has no room is made narrower, and only then cut.
void Printing::PrintLine(QString line, const QRectF &place, int alignment)
{
    constexpr int Narrowest = 60;
    const QFont font = m_painter.font();
    const double width = QFontMetricsF(font, &m_device).horizontalAdvance(line);
    if (width > place.width()) {
        QFont narrow = font;
        narrow.setStretch(std::max(Narrowest, int(100 * place.width() / width)));
        m_painter.setFont(narrow);
        line = QFontMetricsF(narrow, &m_device).elidedText(line, Qt::ElideRight, place.width());
    }
    m_painter.drawText(place, alignment | Qt::AlignVCenter | Qt::TextSingleLine, line);
    m_painter.setFont(font);
}

void Printing::PrintCell(const QString &text, size_t column, double top)
{
    const double left = m_layout.lefts[column] + m_layout.gap;
    const double width = m_layout.lefts[column + 1] - m_layout.gap - left;
    const int alignment = m_table.columns[column].isNumber ? Qt::AlignRight : Qt::AlignLeft;
    double lineTop = top + m_layout.padding;
    for (const QString &line : text.split('\n')) {
        if (!line.isEmpty())
            PrintLine(line, {left, lineTop, width, m_layout.line}, alignment);
        lineTop += m_layout.line;
    }
}

/// All of a page but its rows.
void Printing::PrintFrame(int page)
{
    const double width = m_layout.page.width();
    m_painter.setFont(FontOf(TitlePoints, true));
    const double titleHeight = QFontMetricsF(m_painter.font(), &m_device).lineSpacing();
    m_painter.drawText(QRectF(0, 0, width, titleHeight), Qt::AlignLeft, m_table.title);
    m_painter.setFont(FontOf(TextPoints));
    m_painter.drawText(QRectF(0, 0, width, titleHeight), Qt::AlignRight | Qt::AlignBottom,
                       m_table.beside);
    PrintLine(m_table.about, {0, titleHeight + m_layout.padding, width, m_layout.line},
              Qt::AlignLeft);
    m_painter.drawText(QRectF(0, m_layout.footTop, width, m_layout.line), Qt::AlignHCenter,
                       QString("%1 / %2").arg(page).arg(m_pages));

    m_painter.fillRect(QRectF(0, m_layout.top, width, m_layout.headingHeight), QColor(0xE4E4E4));
    m_painter.setFont(FontOf(TextPoints, true));
    for (size_t column = 0; column < m_table.columns.size(); ++column)
        PrintCell(m_table.columns[column].heading, column, m_layout.top);
    m_painter.setFont(FontOf(TextPoints));
}

void Printing::PrintRow(int row, double top)
{
    for (size_t column = 0; column < m_table.columns.size(); ++column)
        PrintCell(m_table.text(row, int(column)), column, top);
    const double bottom = top + m_layout.rowHeight;
    m_painter.setPen(QPen(QColor(0xA0A0A0), m_layout.padding / 6));
    m_painter.drawLine(QPointF(0, bottom), QPointF(m_layout.page.width(), bottom));
    m_painter.setPen(Qt::black);
}

bool Printing::Print(const std::function<bool()> &step)
{
    if (!m_painter.isActive())
        return false;
    for (int page = 1; page <= m_pages; ++page) {
        if (page > 1 && !m_device.newPage())
            return false;
        PrintFrame(page);
        const int first = (page - 1) * m_layout.rowsPerPage;
        const int end = std::min(first + m_layout.rowsPerPage, m_table.rows);
        double top = m_layout.top + m_layout.headingHeight;
        for (int row = first; row < end; ++row, top += m_layout.rowHeight) {
            if (!step())
                return false;
            PrintRow(row, top);
        }
    }
    return m_painter.end();
}

} // namespace

int PaperTable::PageCount(const QPagedPaintDevice &device) const
{
    const int rowsPerPage = PageLayout(*this, device).rowsPerPage;
    return std::max(1, (rows + rowsPerPage - 1) / rowsPerPage);
}

bool PrintTable(const PaperTable &table, QPagedPaintDevice &device,
                const std::function<bool()> &step)
{
    return Printing(table, device).Print(step);
}
