#include "platform/Contrast.h"

#include <gtest/gtest.h>

TEST(ContrastTest, RatiosOfKnownColours)
{
    const std::tuple<QRgb, QRgb, double> pairs[] = {
        {0x000000, 0xFFFFFF, 21},   {0xFFFFFF, 0xFFFFFF, 1},    {0x767676, 0xFFFFFF, 4.54},
        {0x777777, 0xFFFFFF, 4.48}, {0x0000FF, 0xFFFFFF, 8.59}, {0xFFFF00, 0xFFFFFF, 1.07},
    };
    for (const auto &[one, other, ratio] : pairs) {
        EXPECT_NEAR(ContrastRatio(QColor(one), QColor(other)), ratio, 0.005) << std::hex << one;
        EXPECT_NEAR(ContrastRatio(QColor(other), QColor(one)), ratio, 0.005) << std::hex << one;
    }
}

TEST(ContrastTest, AnyTextCanBeReadOnAnyBackgroundAndKeepsItsHue)
{
    const QRgb colors[] = {0x000000, 0xFFFFFF, 0x808080, 0x800080, 0xC0C0C0, 0x2A2E32,
                           0x3DAEE9, 0xFFC830, 0xFF0000, 0x777777, 0x00FF00, 0x0000FF};
    for (const QRgb text : colors) {
        for (const QRgb background : colors) {
            const QColor readable = Readable(QColor(text), QColor(background));
            EXPECT_GE(ContrastRatio(readable, QColor(background)), LeastContrast)
                << std::hex << text << " on " << background;
            const bool isReadable
                = ContrastRatio(QColor(text), QColor(background)) >= LeastContrast;
            EXPECT_TRUE(!isReadable || readable == QColor(text));
        }
    }
    const QColor purple = Readable(QColor(0x800080), Qt::black);
    EXPECT_EQ(purple.hslHue(), QColor(0x800080).hslHue());
    EXPECT_LT(ContrastRatio(purple, Qt::black), LeastContrast + 0.5) << "no lighter than it takes";
}
