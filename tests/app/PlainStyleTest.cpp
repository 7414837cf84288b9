#include "app/PlainStyle.h"

#include <QImage>
#include <QPainter>
#include <QStyleOption>
#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr QRect Place(0, 0, 40, 20);

/// The colours of a picture's edge, where a frame is, and of its middle.
std::pair<QRgb, QRgb> EdgeAndMiddle(const std::function<void(QPainter &)> &draw)
{
    QImage image(Place.size(), QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    for (const QPoint &corner : {Place.topLeft(), Place.topRight(), Place.bottomLeft()})
        EXPECT_EQ(image.pixel(corner), image.pixel(Place.bottomRight()));
    return {image.pixel(Place.topLeft()), image.pixel(Place.center())};
}

} // namespace

TEST(PlainStyleTest, FramesTellWhatHasTheFocusAndWhatIsTheDefault)
{
    const PlainStyle style;
    const QPalette palette = style.standardPalette();
    const QColor line = palette.color(QPalette::Window).darker(150);
    const QColor focus = palette.color(QPalette::Highlight);
    const QColor face = palette.color(QPalette::Button);
    const struct
    {
        const char *what;
        QStyle::State state;
        QStyleOptionButton::ButtonFeatures features;
        QColor edge;
        QColor middle;
    } buttons[] = {
        {"at rest", {}, {}, line, face},
        {"default",
         {},
         QStyleOptionButton::DefaultButton,
         palette.color(QPalette::WindowText),
         face},
        {"focus", QStyle::State_HasFocus, QStyleOptionButton::DefaultButton, focus, face},
        {"pressed", QStyle::State_Sunken, {}, line, face.darker(115)},
        {"under the mouse", QStyle::State_MouseOver, {}, line, face.lighter(104)},
    };
    for (const auto &[what, state, features, edge, middle] : buttons) {
        QStyleOptionButton option;
        option.rect = Place;
        option.palette = palette;
        option.state = state;
        option.features = features;
        EXPECT_EQ(EdgeAndMiddle([&](QPainter &painter) {
                      style.drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter,
                                          nullptr);
                  }),
                  std::pair(edge.rgb(), middle.rgb()))
            << what;
    }

    for (const auto &[state, edge] :
         {std::pair(QStyle::State_None, line), std::pair(QStyle::State_HasFocus, focus)}) {
        QStyleOptionFrame option;
        option.rect = Place;
        option.palette = palette;
        option.state = state;
        option.lineWidth = 1;
        EXPECT_EQ(EdgeAndMiddle([&](QPainter &painter) {
                      style.drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, nullptr);
                  }),
                  std::pair(edge.rgb(), palette.color(QPalette::Base).rgb()));
    }
}

TEST(PlainStyleTest, TheSelectedTabStandsOut)
{
    const PlainStyle style;
    QStyleOptionTab option;
    option.rect = Place;
    option.palette = style.standardPalette();
    QImage tabs[2];
    for (const bool isSelected : {false, true}) {
        option.state = isSelected ? QStyle::State_Selected : QStyle::State_None;
        QImage &image = tabs[isSelected] = QImage(Place.size(), QImage::Format_RGB32);
        image.fill(Qt::red);
        QPainter painter(&image);
        style.drawControl(QStyle::CE_TabBarTabShape, &option, &painter, nullptr);
    }
    EXPECT_EQ(tabs[1].pixelColor(Place.topLeft()), option.palette.color(QPalette::Highlight));
    EXPECT_EQ(tabs[1].pixelColor(Place.center()), option.palette.color(QPalette::Base));
    EXPECT_EQ(tabs[0].pixelColor(Place.center()), option.palette.color(QPalette::Button));
    EXPECT_EQ(tabs[0].pixelColor(Place.topLeft()), QColor(Qt::red)) << "it is lower";
}
