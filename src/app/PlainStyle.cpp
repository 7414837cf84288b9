#include "app/PlainStyle.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace {

QColor LineColor(const QStyleOption &option)
{
    return option.palette.color(QPalette::Window).darker(150);
}

/// What has the focus is framed in the colour of a selection.
QColor FrameColor(const QStyleOption &option, const QColor &otherwise)
{
    return option.state & QStyle::State_HasFocus ? option.palette.color(QPalette::Highlight)
                                                 : otherwise;
}

void DrawFrame(QPainter &painter, const QRect &rect, const QColor &color)
{
    painter.fillRect(rect.left(), rect.top(), rect.width(), 1, color);
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, color);
    painter.fillRect(rect.left(), rect.top(), 1, rect.height(), color);
    painter.fillRect(rect.right(), rect.top(), 1, rect.height(), color);
}

void DrawButton(QPainter &painter, const QStyleOptionButton &option)
{
    QColor face = option.palette.color(QPalette::Button);
    if (option.state & (QStyle::State_Sunken | QStyle::State_On))
        face = face.darker(115);
    else if (option.state & QStyle::State_MouseOver)
        face = face.lighter(104);
    const bool isDefault = option.features & QStyleOptionButton::DefaultButton;
    const QColor line = isDefault ? option.palette.color(QPalette::WindowText) : LineColor(option);
    painter.fillRect(option.rect, face);
    DrawFrame(painter, option.rect, FrameColor(option, line));
}

/// The selected tab is light, a little higher, and has a coloured edge.
void DrawTab(QPainter &painter, const QStyleOptionTab &option)
{
    const bool isSelected = option.state & QStyle::State_Selected;
    const QRect rect = isSelected ? option.rect : option.rect.adjusted(0, 2, 0, 0);
    painter.fillRect(rect, option.palette.color(isSelected ? QPalette::Base : QPalette::Button));
    DrawFrame(painter, rect, LineColor(option));
    if (isSelected)
        painter.fillRect(rect.left(), rect.top(), rect.width(), 2,
                         option.palette.color(QPalette::Highlight));
}

/// A header's part without a text, as the corner between a grid's headers.
void DrawHeader(QPainter &painter, const QStyleOption &option)
{
    const QRect &rect = option.rect;
    const QColor line = option.palette.color(QPalette::Window).darker(130);
    painter.fillRect(rect, option.palette.color(QPalette::Button));
    painter.fillRect(rect.right(), rect.top(), 1, rect.height(), line);
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, line);
}

} // namespace

PlainStyle::PlainStyle()
    : QProxyStyle("fusion")
{
}

void PlainStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        button && element == PE_PanelButtonCommand) {
        DrawButton(*painter, *button);
        return;
    }
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    if (frame && frame->lineWidth > 0 && element == PE_PanelLineEdit) {
        painter->fillRect(frame->rect, frame->palette.brush(QPalette::Base));
        DrawFrame(*painter, frame->rect, FrameColor(*frame, LineColor(*frame)));
    } else if (frame && element == PE_Frame) {
        DrawFrame(*painter, frame->rect, LineColor(*frame));
    } else if (frame && element == PE_FrameGroupBox) {
        constexpr int TitleGap = 3; // which Fusion's own places leave
        const int title
            = std::max(pixelMetric(PM_IndicatorHeight, option), frame->fontMetrics.height());
        DrawFrame(*painter, frame->rect.adjusted(0, title + TitleGap, 0, 0), LineColor(*frame));
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void PlainStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                             const QWidget *widget) const
{
    if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option);
        tab && element == CE_TabBarTabShape)
        DrawTab(*painter, *tab);
    else if (element == CE_HeaderSection)
        DrawHeader(*painter, *option);
    else
        QProxyStyle::drawControl(element, option, painter, widget);
}
