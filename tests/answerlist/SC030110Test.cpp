#include "answerlist/SC030110.h"

#include "grid/SpreadGrid.h"
#include "output/AnswerCreation.h"
#include "support/FixedClock.h"
#include "support/Operator.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <optional>

namespace {

using Texts = std::vector<QString>;

constexpr auto ShippedHint = "出荷済のものの変更、納期回答作成は出来ません";
constexpr int DateColumn = int(ListColumn::AnswerDate);
constexpr int QuantityColumn = int(ListColumn::AnswerQuantity);

/// The list of four lines: 1 open, 2 shipped, 3 open, 4 a split line that was stored and answered.
class ListScreen : public testing::Test
{
protected:
    ListScreen()
    {
        database.Insert("TLMT0040", {{"CustCD", "C1"}, {"VanCD", "VAN001234567"}, {"LinKBN", 2}});
        database.Insert("TLMT0020", {{"AccHinCD", "P1"}});
        for (const int accNo : {1, 2, 3, 4}) {
            database.Insert("TLAC0010", {{"AccNo", accNo}, {"CustCD", "C1"}, {"ZanVal", 100}});
            database.Insert("TLSP0010", {{"AccNo", accNo},
                                         {"AccSubNo", 1},
                                         {"ShpSubNo", 1},
                                         {"CustCD", "C1"},
                                         {"AccHinCD", "P1"},
                                         {"OdrNo", QString("PO-%1").arg(accNo)},
                                         {"LimDate", "20261205"},
                                         {"IndVal", accNo == 4 ? 0 : 100},
                                         {"AnsVal", accNo == 4 ? 5 : 0},
                                         {"AnsLimUmu", accNo == 4 ? 3 : 0},
                                         {"ShpSts", accNo == 2 ? 3 : 1},
                                         {"DenKBN", 2}});
        }
        database.Open(state.db);
        state.files = database.folder.OnDriveC();
        state.isReloadNeeded = true;
        screen.emplace(state, [this](AnswerList &list, const WriteStamp &stamp,
                                     const std::function<void(const QString &)> &showStatus) {
            AnswerCreation(state.db, state.files, list, stamp, showStatus).MakeAnswers();
        });
        screen->show();
        screen->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&*screen));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !state.isReloadNeeded; }));
    }

    AnswerList &List() { return screen->List(); }
    SpreadGrid *Grid() { return List().Grid(); }
    QPushButton *Button(const QString &name) { return screen->findChild<QPushButton *>(name); }
    QString Status() { return screen->findChild<QLabel *>("MSG")->text(); }
    QString Count() { return screen->findChild<QLineEdit *>("txtSum")->text(); }
    QString Cell(int row, ListColumn column) { return List().Row(row).Cell(column); }

    static QString Focus()
    {
        const QWidget *focus = QApplication::focusWidget();
        return focus ? focus->objectName() : QString();
    }

    static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    /// Each to what has the focus then: the first may open a cell's editor.
    static void Keys(const QString &text)
    {
        for (const QChar c : text)
            QTest::keyClick(QApplication::focusWidget(), c.toLatin1());
    }

    /// Presses a button by its key, and waits until it is up again.
    void Alt(Qt::Key key)
    {
        Key(key, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([this] {
            return std::ranges::none_of(screen->findChildren<QPushButton *>(),
                                        [](const QPushButton *button) { return button->isDown(); });
        }));
    }

    void Click(const QString &button)
    {
        QTest::mouseClick(Button(button), Qt::LeftButton);
        QApplication::processEvents();
    }

    void ClickRow(int row, Qt::KeyboardModifiers modifiers = {})
    {
        const QHeaderView *header = Grid()->verticalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, modifiers,
                          {5, header->sectionViewportPosition(row - 1) + 5});
    }

    void ClickCell(int column, int row)
    {
        const QModelIndex cell = Grid()->model()->index(row - 1, column - 1);
        QTest::mouseClick(Grid()->viewport(), Qt::LeftButton, {},
                          Grid()->visualRect(cell).center());
    }

    QString SelectedRows()
    {
        QString rows;
        for (int row = 1; row <= List().RowCount(); ++row)
            if (List().IsSelected(row))
                rows += QString::number(row);
        return rows;
    }

    QString ActiveCell()
    {
        return QString("%1/%2").arg(Grid()->ActiveColumn()).arg(Grid()->ActiveRow());
    }

    QString Dates()
    {
        QStringList dates;
        for (int row = 1; row <= List().RowCount(); ++row)
            dates += Cell(row, ListColumn::AnswerDate);
        return dates.join(',');
    }

    ScriptedBoxes boxes;
    const FixedClock clock{QDateTime(QDate(2026, 11, 25), QTime(8, 9, 7))};
    TestDatabase database;
    ProgramState state;
    std::optional<SC030110> screen;
};

} // namespace

TEST_F(ListScreen, EndingAnEditMovesTheActiveCellAndLeavesTheSelection)
{
    ClickRow(1);
    ClickRow(3, Qt::ControlModifier);
    const QString selected = SelectedRows();
    ASSERT_EQ(selected, "13");
    Grid()->SetCurrentCell(QuantityColumn, 3);
    Grid()->Perform(SpreadGrid::Action::ActivateCell);
    const struct
    {
        const char *typed;
        Qt::Key end;
        Qt::KeyboardModifiers modifiers;
        const char *active, *quantity, *date; ///< of row 3
    } edits[] = {
        {"1234.5", Qt::Key_Tab, {}, "6/3", "1,234.500", ""},
        {"261206", Qt::Key_Backtab, Qt::ShiftModifier, "5/3", "1,234.500", "26/12/06"},
        {".25", Qt::Key_Return, {}, "5/4", "0.250", "26/12/06"},
        {"", Qt::Key_Return, Qt::ShiftModifier, "5/3", "0.250", "26/12/06"},
        {"7", Qt::Key_Escape, {}, "5/3", "0.250", "26/12/06"},
        {"8", Qt::Key_Up, {}, "5/2", "8.000", "26/12/06"},
    };
    for (const auto &[typed, end, modifiers, active, quantity, date] : edits) {
        Keys(typed);
        Key(end, modifiers);
        EXPECT_EQ(ActiveCell(), active) << typed;
        EXPECT_EQ(SelectedRows(), selected) << typed;
        EXPECT_EQ(Cell(3, ListColumn::AnswerQuantity), quantity) << typed;
        EXPECT_EQ(Cell(3, ListColumn::AnswerDate), date) << typed;
    }
    EXPECT_EQ(Cell(3, ListColumn::Marks), " \r\n*");
    Keys("9"); // the shipped row takes nothing
    EXPECT_FALSE(Grid()->IsEditing());
    EXPECT_EQ(Status(), ShippedHint);
    EXPECT_EQ(Cell(2, ListColumn::AnswerQuantity), "0.000");
}

TEST_F(ListScreen, DateCommandsAskForRowsThatCanBeSet)
{
    const Texts onlyShipped
        = {"出荷済のものしか、選択されていません\rこのデータの変更は出来ません"};
    for (const char *button : {"cmdLimSet", "cmbLimDef"}) {
        Grid()->clearSelection();
        Click(button);
        ASSERT_EQ(boxes.Shown().size(), 1u);
        EXPECT_EQ(boxes.Shown()[0].title, "情報");
        EXPECT_EQ(boxes.TakeTexts(), Texts{"納期を設定したい行を選択してください\r"}) << button;
        ClickRow(2);
        Click(button);
        EXPECT_EQ(boxes.TakeTexts(), onlyShipped) << button;
    }
    EXPECT_TRUE(boxes.Prompts().empty());
    EXPECT_EQ(Dates(), ",,,");
}

TEST_F(ListScreen, TheDateQuestion)
{
    const struct
    {
        const char *typed, *dates;
        Texts told;
    } cases[] = {
        {"", ",,,", {}},
        {"261131", ",,,", {"日付の入力が間違っています\r"}},
        {"26/12/07", ",,,", {"日付の入力が間違っています\r"}},
        {"x", ",,,", {"日付の入力が間違っています\r"}},
        {"261207", "26/12/07,,26/12/07,", {}},
        {"510101", "51/01/01,,51/01/01,", {}},
    };
    ClickRow(1);
    ClickRow(3, Qt::ShiftModifier);
    for (const auto &[typed, dates, told] : cases) {
        boxes.Type(typed);
        Click("cmdLimSet");
        EXPECT_EQ(boxes.TakeTexts(), told) << typed;
        EXPECT_EQ(Dates(), dates) << typed;
    }
    EXPECT_EQ(boxes.Prompts()[0].title, "納期設定");
    EXPECT_EQ(boxes.Prompts()[0].text, "回答納期を入力してください\r"
                                       "例 ：1997年5月28日の場合 970528 と6桁の数字で入力する");
}

TEST_F(ListScreen, CopyAndDeleteNeedOneRow)
{
    for (const char *button : {"cmdCopy", "cmdDelete"}) {
        Grid()->clearSelection();
        Click(button);
        EXPECT_EQ(boxes.TakeTexts(), Texts{"有効な行を選択してください\r"}) << button;
        ClickRow(1);
        ClickRow(2, Qt::ShiftModifier);
        Click(button);
        EXPECT_EQ(boxes.TakeTexts(), Texts{"複数行の指定は出来ません"}) << button;
    }
    const std::pair<int, const char *> refusals[] = {
        {1, "削除されませんでした\rこのデータは 分納データではありません"},
        {4, "削除されませんでした\rこのデータは 納期回答済です"},
    };
    for (const auto &[row, text] : refusals) {
        ClickRow(row);
        Click("cmdDelete");
        EXPECT_EQ(boxes.TakeTexts(), Texts{text}) << row;
    }
    EXPECT_EQ(Count(), "4");
    EXPECT_EQ(List().RowCount(), 4);
}

TEST_F(ListScreen, KeyboardAloneThroughTheWholeScreen)
{
    Key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(SelectedRows(), "1");
    boxes.Type("261210");
    Alt(Qt::Key_S);
    EXPECT_EQ(Cell(1, ListColumn::AnswerDate), "26/12/10");
    Alt(Qt::Key_L);
    EXPECT_EQ(Cell(1, ListColumn::AnswerDate), "26/12/05");
    Alt(Qt::Key_C);
    EXPECT_EQ(Count(), "5");

    // Tab goes round the buttons and comes back to the grid.
    Grid()->setFocus();
    for (const char *next : {"cmdLimSet", "cmbLimDef", "cmdCopy", "cmdDelete", "cmdDetail",
                             "cmdMake", "cmdExit", "spdList"}) {
        Key(Qt::Key_Tab);
        EXPECT_EQ(Focus(), next);
    }
    Key(Qt::Key_Down);
    Key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(SelectedRows(), "2");
    Alt(Qt::Key_I);
    EXPECT_EQ(boxes.TakeTexts(), Texts{"まだ未登録のデータなので、詳細を表示できません\r"});
    boxes.Press(BoxButton::Yes);
    Alt(Qt::Key_D);
    boxes.TakeTexts();
    EXPECT_EQ(Count(), "4");

    Grid()->setFocus();
    Key(Qt::Key_Home, Qt::ControlModifier);
    Key(Qt::Key_Space, Qt::ShiftModifier);
    Operator hand;
    hand.At("SC030120", "detail", [&] {
        hand.Keys("261212");
        hand.Key(Qt::Key_Return);
        hand.Keys("33");
        hand.Key(Qt::Key_Return);
        hand.Key(Qt::Key_Return);
        hand.Key(Qt::Key_Return);
    });
    hand.Start();
    Key(Qt::Key_I, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return hand.IsDone(); })) << hand.Failure().toStdString();
    screen->activateWindow(); // as a window manager does when a dialog closes
    ASSERT_TRUE(QTest::qWaitForWindowActive(&*screen));
    EXPECT_EQ(boxes.TakeTexts(), Texts{"登録されました\r"});
    EXPECT_EQ(Cell(1, ListColumn::AnswerQuantity) + ' ' + Cell(1, ListColumn::AnswerDate),
              "33.000 26/12/12");

    Alt(Qt::Key_M);
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_TRUE(boxes.TakeTexts()[0].startsWith("納期回答作成処理が終了しました"));
    EXPECT_TRUE(List().Row(1).IsAnswered());
    EXPECT_EQ(database.Rows("SELECT AnsVal, AnsLimDate, AnsLimUmu FROM TLSP0010 WHERE AccNo = 1"),
              "33.0|20261212|3");
    Alt(Qt::Key_X);
    EXPECT_FALSE(screen->isVisible());
}

TEST_F(ListScreen, MakeStaysAtTheRowInErrorUntilItIsMended)
{
    ClickRow(1);
    ClickRow(3, Qt::ShiftModifier);
    Click("cmbLimDef");
    ClickCell(QuantityColumn, 3);
    Keys("0");
    Key(Qt::Key_Return);
    ClickRow(1);
    ClickRow(3, Qt::ShiftModifier);
    Click("cmdMake");
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_EQ(Grid()->ActiveRow(), 3);
    EXPECT_EQ(Status(), "回答数量が、0です");
    Grid()->setFocus();
    Key(Qt::Key_Up);
    EXPECT_EQ(Status(), ShippedHint);
    Key(Qt::Key_Up);
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(database.Rows("SELECT DISTINCT AnsLimDate FROM TLSP0010"), "");

    ClickCell(QuantityColumn, 3);
    EXPECT_EQ(Status(), "回答数量が、0です");
    Keys("5");
    Click("cmdMake"); // ends the edit first
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_TRUE(boxes.TakeTexts()[0].startsWith("納期回答作成処理が終了しました"));
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(Cell(3, ListColumn::Error), "");
    EXPECT_EQ(database.Rows("SELECT AnsVal, AnsLimUmu FROM TLSP0010 WHERE AccNo = 3"), "5.0|3");
}

TEST_F(ListScreen, AWrongTextIsToldOnceToAKeyAsWell)
{
    for (const Qt::Key key :
         {Qt::Key_S, Qt::Key_L, Qt::Key_C, Qt::Key_D, Qt::Key_I, Qt::Key_M, Qt::Key_X}) {
        ClickCell(DateColumn, 1);
        Keys("261131");
        Alt(key);
        EXPECT_EQ(boxes.TakeTexts(), Texts{"日付の入力が間違っています\r"}) << key;
        EXPECT_TRUE(Grid()->IsEditing()) << key;
        EXPECT_EQ(Focus(), "cellEditor") << key;
        EXPECT_TRUE(screen->isVisible()) << key;
        Key(Qt::Key_Escape);
        EXPECT_EQ(Dates(), ",,,") << key;
    }
}
