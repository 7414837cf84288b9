#include "platform/LongWork.h"
#include "support/QtPrinters.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

/// Works until it is told to stop or has told of its progress some times.
void Work(LongWork &work, QStringList &told)
{
    QElapsedTimer time;
    time.start();
    while (work.Step() && told.size() < 3 && time.elapsed() < 10'000) {
    }
}

} // namespace

TEST(LongWorkTest, TheWindowLivesAndItsKeysWait)
{
    QLineEdit box;
    box.show();
    box.setFocus();
    int timers = 0;
    QTimer::singleShot(0, &box, [&] {
        ++timers;
        QTest::keyClicks(&box, "typed");
        QTest::mouseClick(&box, Qt::LeftButton);
        box.close();
    });
    QStringList told;
    LongWork work([&](const QString &text) { told += text; }, "しています…", 2'000'000'000);
    Work(work, told);
    EXPECT_EQ(timers, 1);
    EXPECT_EQ(box.text(), "");
    EXPECT_TRUE(box.isVisible());
    EXPECT_FALSE(work.IsStopped());
    ASSERT_EQ(told.size(), 3);
    EXPECT_TRUE(told[0].startsWith("しています…（")) << told[0].toStdString();
    EXPECT_TRUE(told[0].endsWith(" / 2,000,000,000 件）")) << told[0].toStdString();

    QTest::keyClicks(&box, "typed");
    EXPECT_EQ(box.text(), "typed") << "afterwards keys work again";
}

TEST(LongWorkTest, EscapeAsksToStop)
{
    QLineEdit box;
    box.show();
    QTimer::singleShot(0, &box, [&] { QTest::keyClick(&box, Qt::Key_Escape); });
    QStringList told;
    LongWork work([&](const QString &text) { told += text; }, "しています…");
    Work(work, told);
    EXPECT_TRUE(work.IsStopped());
    EXPECT_FALSE(work.Step());
    EXPECT_EQ(told, QStringList{"しています…（0 秒）"});
}
