#pragma once

#include <QProxyStyle>

/// Qt's Fusion with the fields, buttons, tabs, headers and frames in plain colours, as the grids
/// have them. Fusion's gradients and round corners take a quarter of a form's first picture.
class PlainStyle : public QProxyStyle
{
public:
    PlainStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
};
