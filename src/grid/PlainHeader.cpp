#include "grid/PlainHeader.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

PlainHeader::PlainHeader(Qt::Orientation orientation, QWidget *parent)
    : QHeaderView(orientation, parent)
{
    setSectionsClickable(true);
    connect(this, &QHeaderView::sectionCountChanged, this, &PlainHeader::ForgetSize);
    connect(this, &QHeaderView::sectionResized, this, &PlainHeader::ForgetSize);
}

void PlainHeader::setModel(QAbstractItemModel *model)
{
    QHeaderView::setModel(model);
    connect(model, &QAbstractItemModel::headerDataChanged, this, &PlainHeader::ForgetSize);
}

/// Qt asks whenever rows come or go, and measures up to two hundred texts each time.
QSize PlainHeader::sizeHint() const
{
    if (!m_size.isValid())
        m_size = Measured();
    return m_size;
}

/// Row numbers get room for the longest, columns for their texts.
QSize PlainHeader::Measured() const
{
    if (orientation() == Qt::Horizontal)
        return QHeaderView::sizeHint();
    constexpr qsizetype LeastDigits = 5; // so that few lists change the room
    const int digits = int(std::max(LeastDigits, QString::number(count()).size()));
    const int digitWidth = QFontMetrics(SelectedFont()).horizontalAdvance(QChar('0'));
    const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this);
    return {digits * digitWidth + 2 * margin, 0};
}

QFont PlainHeader::SelectedFont() const
{
    QFont bold = font();
    bold.setBold(true);
    return bold;
}

bool PlainHeader::IsSelected(int index) const
{
    if (!highlightSections())
        return false;
    return orientation() == Qt::Vertical ? selectionModel()->rowIntersectsSelection(index)
                                         : selectionModel()->columnIntersectsSelection(index);
}

void PlainHeader::paintEvent(QPaintEvent *event)
{
    m_numbers.SetFont(font());
    m_selectedNumbers.SetFont(SelectedFont());
    QHeaderView::paintEvent(event);
    QPainter painter(viewport());
    m_numbers.Draw(painter);
    m_selectedNumbers.Draw(painter);
}

void PlainHeader::paintSection(QPainter *painter, const QRect &section, int index) const
{
    const QColor line = palette().color(QPalette::Window).darker(130);
    painter->fillRect(section, palette().color(QPalette::Button));
    painter->fillRect(section.right(), section.top(), 1, section.height(), line);
    painter->fillRect(section.left(), section.bottom(), section.width(), 1, line);

    const QString text = model()->headerData(index, orientation(), Qt::DisplayRole).toString();
    const QColor color = palette().color(QPalette::ButtonText);
    const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this);
    QRect room = section.adjusted(margin, 0, -margin, 0);
    if (orientation() == Qt::Vertical) {
        room.translate(0, (room.height() - fontMetrics().height()) / 2);
        (IsSelected(index) ? m_selectedNumbers : m_numbers)
            .Add(*painter, text, room, defaultAlignment(), color);
        return;
    }
    if (IsSelected(index))
        painter->setFont(SelectedFont());
    painter->setPen(color);
    painter->drawText(room, int(defaultAlignment()), text);
}

void PlainHeader::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        ForgetSize();
    QHeaderView::changeEvent(event);
}
