#include "platform/LongWork.h"
#include "support/QtPrinters.h"

#include <QDeadlineTimer>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

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
    const QDeadlineTimer deadline(10'000);
    while (work.Step() && told.size() < 3 && !deadline.hasExpired()) {
    }
    EXPECT_EQ(timers, 1);
    EXPECT_EQ(box.text(), "");
    EXPECT_TRUE(box.isVisible());
    EXPECT_FALSE(work.IsStopped());
    ASSERT_EQ(told.size(), 3);
    EXPECT_TRUE(told[0].startsWith("しています…（")) << told[0].toStdString();
    EXPECT_TRUE(told[0].endsWith(" / 2,000,000,000 件）　Esc で中断")) << told[0].toStdString();

    QTest::keyClicks(&box, "typed");
    EXPECT_EQ(box.text(), "typed") << "afterwards keys work again";
}

TEST(LongWorkTest, EscStopsWhatCanBeStoppedAndNoOtherIsSaidToBe)
{
    for (const auto stop : {LongWork::Stop::ByEsc, LongWork::Stop::Never}) {
        QLineEdit box;
        box.show();
        QTimer::singleShot(0, &box, [&] { QTest::keyClick(&box, Qt::Key_Escape); });
        QString told;
        {
            LongWork work([&](const QString &text) { told = text; }, "しています…", 0,
                          LongWork::Pieces::Long, stop);
            const QDeadlineTimer deadline(10'000);
            bool goesOn = true;
            while (goesOn && !deadline.hasExpired() && told.isEmpty())
                goesOn = work.Step();
            EXPECT_EQ(goesOn, stop == LongWork::Stop::Never);
            EXPECT_EQ(told.contains("Esc"), stop == LongWork::Stop::ByEsc) << told.toStdString();
        }
        EXPECT_EQ(told, "しています…") << "no longer";
    }
}
