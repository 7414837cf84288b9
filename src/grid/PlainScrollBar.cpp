#include "grid/PlainScrollBar.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOptionSlider>

bool PlainScrollBar::event(QEvent *event)
{
    const bool isDone = QScrollBar::event(event);
    // Styles take this away; what lies below the bar would be painted with each change of it.
    if (event->type() == QEvent::Polish)
        setAttribute(Qt::WA_OpaquePaintEvent);
    return isDone;
}

void PlainScrollBar::paintEvent(QPaintEvent *)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window).darker(108));
    constexpr struct
    {
        QStyle::SubControl part;
        QStyle::PrimitiveElement arrow; ///< PE_CustomBase: none
    } buttons[] = {{QStyle::SC_ScrollBarSubLine, QStyle::PE_IndicatorArrowUp},
                   {QStyle::SC_ScrollBarAddLine, QStyle::PE_IndicatorArrowDown},
                   {QStyle::SC_ScrollBarSlider, QStyle::PE_CustomBase}};
    for (const auto &[part, arrow] : buttons) {
        const bool isPressed = isSliderDown() && part == QStyle::SC_ScrollBarSlider;
        const QRect place = style()->subControlRect(QStyle::CC_ScrollBar, &option, part, this);
        painter.fillRect(place, palette().color(QPalette::Window).darker(150));
        painter.fillRect(place.adjusted(1, 1, -1, -1),
                         palette().color(QPalette::Button).darker(isPressed ? 115 : 100));
        if (arrow == QStyle::PE_CustomBase)
            continue;
        QStyleOption sign;
        sign.initFrom(this);
        sign.rect = place.adjusted(3, 3, -3, -3);
        style()->drawPrimitive(arrow, &sign, &painter, this);
    }
}
