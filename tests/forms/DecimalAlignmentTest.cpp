#include "forms/DecimalAlignment.h"

#include "util/bValue.h"

#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace {

/// Where the text ends or its decimal point begins, in pixels from the box's left edge.
int PointOf(QLineEdit &box)
{
    const QString text = box.text();
    const qsizetype blanks = text.indexOf(text.trimmed());
    const qsizetype point = text.indexOf('.');
    box.setCursorPosition(int(point >= 0 ? point : blanks + text.trimmed().size()));
    box.grab(); // lays the text out
    return box.inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x();
}

} // namespace

TEST(DecimalAlignmentTest, PointsStandBelowEachOtherWhateverFollowsThem)
{
    for (const int size : {12, 19}) {
        QLineEdit box;
        new DecimalAlignment(box, DigitSpec::Quantity);
        QFont font = box.font();
        font.setPixelSize(size);
        box.setFont(font);
        box.resize(400, 40);
        box.setText("0.125");
        box.show();
        const int place = PointOf(box);
        EXPECT_GT(place, 200);
        for (const char *text : {"      2,000", "      1,234.5  ", "12", "          0.25 ", "7    ",
                                 "-1.", "999,999,999.999"}) {
            box.setText(text);
            EXPECT_NEAR(PointOf(box), place, 1) << size << " \"" << text << '"';
        }
        box.setText("0.");
        QTest::keyClicks(&box, "5");
        EXPECT_NEAR(PointOf(box), place, 1) << "typed";
        box.setText("1.23456789");
        EXPECT_LT(PointOf(box), place) << "more decimals than there is room for are shown, too";
    }
}
