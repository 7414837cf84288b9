#include "forms/WindowMemory.h"
#include "forms/Form.h"

#include "platform/System.h"
#include "support/Hands.h"
#include "support/QtPrinters.h"

#include <QAction>
#include <QLabel>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QVBoxLayout>
#include <gtest/gtest.h>
#include <memory>

namespace {

/// A screen with a grid of three columns, the third of which is hidden, and a flag.
class Screen : public Form
{
public:
    explicit Screen(int fontSize = 10)
        : m_table(1, 3)
    {
        setObjectName("Screen");
        QFont large = font();
        large.setPixelSize(fontSize);
        setFont(large);
        auto *layout = new QVBoxLayout(this);
        auto *bar = new QStatusBar;
        AddStatusPanels(*bar, {"MSG"});
        grid = new QTableView;
        grid->setObjectName("grid");
        grid->setModel(&m_table);
        grid->hideColumn(2);
        grid->setColumnWidth(0, 50);
        grid->setColumnWidth(1, 70);
        layout->addWidget(grid);
        layout->addWidget(bar);
        resize(400, 300);
        KeepColumns(*grid);
        isFlag = WindowMemory(*this).Flag("flag");
        connect(this, &Form::ArrangementForgotten, this, [this] { isFlag = false; });
        show();
        activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
        grid->setFocus();
    }

    QString Arrangement() const
    {
        return QString("%1x%2 %3 %4")
                   .arg(width())
                   .arg(height())
                   .arg(grid->columnWidth(0))
                   .arg(grid->columnWidth(1))
               + (isFlag ? " flag" : "");
    }

    QTableView *grid;
    bool isFlag = false;

private:
    QStandardItemModel m_table;
};

class WindowMemoryTest : public testing::Test
{
protected:
    ~WindowMemoryTest() override { WindowMemory::ForgetAll(); }

    /// As the operator leaves it.
    static void Arrange()
    {
        Screen screen;
        EXPECT_EQ(screen.Arrangement(), "400x300 50 70");
        screen.resize(523, 331);
        screen.grid->setColumnWidth(1, 91);
        WindowMemory(screen).SetFlag("flag", true);
        screen.hide();
    }
};

} // namespace

TEST_F(WindowMemoryTest, AWindowComesBackAsItWasLeftInTheMiddle)
{
    Arrange();
    double line = 0;
    {
        Screen again;
        line = again.fontMetrics().height();
        EXPECT_EQ(again.Arrangement(), "523x331 50 91 flag");
        const QPoint middle = again.geometry().center() - WorkArea().center();
        EXPECT_LE(middle.manhattanLength(), 4) << "but for its frame";
        again.hide();
    }
    Screen large(20);
    EXPECT_EQ(large.grid->columnWidth(0), 50) << "the form's own";
    const double growth = large.fontMetrics().height() / line;
    EXPECT_NEAR(large.grid->columnWidth(1), 91 * growth, 1) << "as much to read";
    EXPECT_GT(large.height(), 600);
    EXPECT_LE(large.height(), WorkArea().height());
}

TEST_F(WindowMemoryTest, AKeyForgetsItAndSaysSo)
{
    Arrange();
    Screen screen;
    QTest::keyClick(screen.grid, Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(screen.Arrangement(), "400x300 50 70");
    EXPECT_TRUE(screen.findChild<QLabel *>("MSG")->text().endsWith("元に戻しました"));
    EXPECT_TRUE(screen.actions().contains(screen.ForgetAction())) << "the menu of a free place";
    screen.hide();
    EXPECT_EQ(Screen().Arrangement(), "400x300 50 70");
}

TEST_F(WindowMemoryTest, WhatCanNotBeReadIsNotKept)
{
    for (const char *kept : {"size=x, y\ngrid=a, -5", "size=1e9, 1e9\ngrid=0, nan", "size=5"}) {
        {
            QFile file(WindowMemory::File());
            ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly));
            file.write(
                "[Windows]\n"
                + QByteArray(kept).replace("size", "Screen\\size").replace("grid", "Screen\\grid"));
        }
        const Screen screen;
        EXPECT_EQ(screen.grid->columnWidth(1), 70) << kept;
        EXPECT_TRUE(WorkArea().size().expandedTo(screen.size()) == WorkArea().size()) << kept;
    }
}
