#include "app/Desktop.h"

#include <QApplication>
#include <QLabel>
#include <gtest/gtest.h>

TEST(DesktopTest, EveryCharacterLeavesATrace)
{
    PrepareDesktop(*qApp);
    QLabel label;
    for (const char *text : {"納", "ｶ", "㈱", "∑", "\uE000"}) { // the last has no glyph anywhere
        label.setText(text);
        label.resize(label.sizeHint());
        const QImage picture = label.grab().toImage();
        QImage blank = picture;
        blank.fill(picture.pixelColor(0, 0));
        EXPECT_NE(picture, blank) << text;
    }
}
