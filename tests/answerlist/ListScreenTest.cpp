#include "ListFixture.h"

#include "answerlist/SC030110.h"
#include "output/AnswerCreation.h"
#include "support/Operator.h"
#include "util/VbText.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace {

using enum ListColumn;

/// The list screen in its window, on a database of a few lines.
class ListScreenTest : public ListFixture
{
protected:
    void Show()
    {
        const auto makeAnswers = [this](AnswerList &answers, const WriteStamp &stamp,
                                        const ShowStatusText &showStatus) {
            AnswerCreation(state.db, state.files, answers, stamp, showStatus).MakeAnswers();
        };
        state.isReloadNeeded = true;
        screen = std::make_unique<SC030110>(state, makeAnswers);
        shownList = &screen->List();
        screen->show();
        screen->activateWindow();
        ASSERT_TRUE(
            QTest::qWaitFor([this] { return !state.isReloadNeeded || !screen->isVisible(); }));
        if (screen->isVisible()) {
            ASSERT_TRUE(QTest::qWaitForWindowActive(screen.get()));
        }
    }

    template <typename Control>
    Control *Find(const char *name)
    {
        return screen->findChild<Control *>(name);
    }
    SpreadGrid *Grid() { return screen->List().Grid(); }
    QString Text(const char *box) { return Find<QLineEdit>(box)->text(); }
    QString Status() { return Find<QLabel>("MSG")->text(); }
    void Click(const char *button)
    {
        QTest::mouseClick(Find<QPushButton>(button), Qt::LeftButton);
        QTest::qWait(0); // what leaving the grid has queued
    }
    void ClickCell(ListColumn column, int row, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        const QModelIndex cell = Grid()->model()->index(row - 1, int(column) - 1);
        Grid()->scrollTo(cell);
        QTest::mouseClick(Grid()->viewport(), Qt::LeftButton, keys,
                          Grid()->visualRect(cell).center());
    }
    static void Keys(const QString &text)
    {
        for (const QChar c : text)
            QTest::keyClick(QApplication::focusWidget(), c.toLatin1());
    }
    static void Key(Qt::Key key, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, keys);
    }

    std::unique_ptr<SC030110> screen;
};

const char *const ListButtons[] = {"cmdCopy", "cmdDelete", "cmdMake", "cmdDetail", "cmdLimSet"};

} // namespace

TEST_F(ListScreenTest, AppearsWithItsLinesAndNothingSelected)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2);
    state.conditions.customerCode = "C1";
    state.conditions.customerName = "青葉電機";
    state.conditions.toDate = "20261231";
    const struct
    {
        const char *basis;
        const char *name;
    } bases[] = {{"SHPDATE", "出荷（予定）"}, {"LIMDATE", "指定納期"}, {"ACCDATE", "受注日"}};
    for (const auto &[basis, name] : bases) {
        state.conditions.dateBasis = basis;
        Show();
        EXPECT_EQ(Find<QLabel>("lblDate")->text(), name);
    }
    EXPECT_EQ(Text("txtCustCD") + ' ' + Text("txtCustName"), "C1 青葉電機");
    EXPECT_EQ(Text("txtFromAccDate") + '-' + Text("txtToAccDate"), "-26/12/31");
    EXPECT_EQ(Text("txtSum"), "2");
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(Find<QLabel>("DATE")->text(), "26/05/01");
    EXPECT_EQ(shownList->SelectedRowCount(), 0);
    EXPECT_EQ(shownList->ActiveRow(), 1);
    EXPECT_EQ(QApplication::focusWidget(), Grid());
    for (const char *button : ListButtons)
        EXPECT_TRUE(Find<QPushButton>(button)->isEnabled()) << button;

    Change("TLSP0010", "ShpSubNo = 2", "DenKBN = 15");
    Show();
    EXPECT_EQ(Status(), "不良品の明細は、紫色で表示されます");
}

TEST_F(ListScreenTest, WithoutLinesItClosesItself)
{
    Show();
    EXPECT_FALSE(screen->isVisible());
    EXPECT_TRUE(state.isReloadNeeded);
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"データが存在しません\r"});
    EXPECT_EQ(Text("txtSum"), "0");
    for (const char *button : ListButtons)
        EXPECT_FALSE(Find<QPushButton>(button)->isEnabled()) << button;
    for (const char *button : {"cmdExit", "cmbLimDef"})
        EXPECT_TRUE(Find<QPushButton>(button)->isEnabled()) << button;

    file.Run("DROP TABLE TLMT0040");
    Show();
    EXPECT_FALSE(screen->isVisible());
    ASSERT_EQ(boxes.Shown().size(), 1u) << "a database error is told once";
    EXPECT_EQ(boxes.Shown()[0].title, "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ");
}

TEST_F(ListScreenTest, TheCountFollowsCopyAndDelete)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    file.Run("INSERT INTO TLAC0010 (AccNo, CustCD, ShpSts, DpoFlg) WITH RECURSIVE n(i) AS (SELECT 2"
             " UNION ALL SELECT i + 1 FROM n WHERE i < 1000) SELECT i, 'C1', 1, 0 FROM n");
    file.Run("INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, CustCD, DenKBN, ShpSts, DpoFlg,"
             " AccHinCD) SELECT AccNo, 1, 1, 'C1', 2, 1, 0, 'Z' FROM TLAC0010 WHERE AccNo > 2");
    Show();
    EXPECT_EQ(Text("txtSum"), "999");
    ClickCell(Order, 1);
    Click("cmdCopy");
    EXPECT_EQ(Text("txtSum"), "1,000");
    ClickCell(Order, 2);
    boxes.Press(BoxButton::No);
    Click("cmdDelete");
    EXPECT_EQ(Text("txtSum"), "1,000");
    boxes.Press(BoxButton::Yes);
    Click("cmdDelete");
    EXPECT_EQ(Text("txtSum"), "999");
    EXPECT_EQ(shownList->ActiveRow(), 2);
}

TEST_F(ListScreenTest, TheStatusBarFollowsTheActiveRow)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2, "ShpSts = 3");
    AddLine(1, 1, 3);
    Show();
    const QString shipped = "出荷済のものの変更、納期回答作成は出来ません";
    Key(Qt::Key_Down);
    EXPECT_EQ(Status(), shipped);
    Key(Qt::Key_Return);
    EXPECT_EQ(shownList->ActiveRow(), 3);
    EXPECT_EQ(Status(), "");
    ClickCell(Order, 2);
    EXPECT_EQ(Status(), shipped);
    screen->List().SetCell(3, Error, "回答数量が、0です");
    Key(Qt::Key_Down);
    EXPECT_EQ(Status(), "回答数量が、0です");
}

TEST_F(ListScreenTest, DatesAreSetByTypingAndByBothButtons)
{
    AddOrder(1);
    for (int line = 1; line <= 4; ++line)
        AddLine(1, 1, line, line == 3 ? "ShpSts = 3" : "");
    Show();
    ClickCell(AnswerDate, 1);
    Keys("260601");
    Key(Qt::Key_Return);
    EXPECT_EQ(Cells(1, {Marks, AnswerDate}), " /*|26/06/01");
    ClickCell(AnswerDate, 2);
    ClickCell(Order, 4, Qt::ShiftModifier);
    boxes.Type("260602");
    Click("cmdLimSet");
    for (const int row : {2, 4})
        EXPECT_EQ(Cells(row, {Marks, AnswerDate}), " /*|26/06/02") << row;
    EXPECT_EQ(Cell(3, AnswerDate), "");
    boxes.Type("");
    Click("cmdLimSet");
    boxes.Type("260631");
    Click("cmdLimSet");
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"日付の入力が間違っています\r"});
    EXPECT_EQ(Cell(2, AnswerDate), "26/06/02");
    Click("cmbLimDef");
    for (const int row : {2, 4})
        EXPECT_EQ(Cells(row, {Marks, AnswerDate}), " / |26/05/20") << row;
    EXPECT_TRUE(Grid()->Redraw());
}

TEST_F(ListScreenTest, NoCommandRunsPastAWrongText)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    Show();
    for (const char *button :
         {"cmdLimSet", "cmbLimDef", "cmdCopy", "cmdDelete", "cmdDetail", "cmdMake", "cmdExit"}) {
        ClickCell(AnswerDate, 1);
        Keys("260631");
        const QString before = WholeRow(1);
        Click(button);
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"日付の入力が間違っています\r"})
            << button;
        EXPECT_TRUE(Grid()->IsEditing()) << button;
        EXPECT_TRUE(screen->isVisible()) << button;
        EXPECT_EQ(WholeRow(1), before) << button;
        Key(Qt::Key_Escape);
        EXPECT_TRUE(screen->isVisible()) << "Esc ends the edit, not the screen";
    }
    Click("cmdExit");
    EXPECT_FALSE(screen->isVisible());
}

TEST_F(ListScreenTest, ACommandTakesWhatHasJustBeenTyped)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    Show();
    ClickCell(AnswerQuantity, 1);
    Keys(".5");
    Click("cmdCopy");
    EXPECT_EQ(Cell(1, AnswerQuantity), "0.500");
    EXPECT_EQ(Cell(2, AnswerQuantity), "99.500");
}

TEST_F(ListScreenTest, TheFirstErrorOfTheChecksIsShownAndStays)
{
    AddOrder(1);
    AddOrder(2);
    for (int line = 1; line <= 40; ++line)
        AddLine(1, 1, line, "AnsVal = 1, AnsLimDate = '20260601', AnsMark = '2'");
    AddLine(2, 1, 1, "AnsVal = 60, AnsLimDate = '20260601', AnsMark = '2'");
    AddLine(2, 1, 2, "AnsVal = 60, AnsLimDate = '20260602', AnsMark = '2'");
    Show();
    const struct
    {
        const char *what;
        std::function<void()> act;
        int row;
        const char *error;
    } cases[] = {
        {"sum", [] {}, 41, "回答数量合計が、注残数を超えています"},
        {"quantity", [&] { screen->List().SetCell(30, AnswerQuantity, "0.000"); }, 30,
         "回答数量が、0です"},
        {"date", [&] { screen->List().SetAnswerDate(35, ""); }, 35, "回答納期が入力されていません"},
    };
    for (const auto &[what, act, row, error] : cases) {
        screen->List().SetCell(30, AnswerQuantity, "1.000");
        ClickCell(Order, 1);
        Key(Qt::Key_A, Qt::ControlModifier);
        act();
        Click("cmdMake");
        EXPECT_EQ(shownList->ActiveRow(), row) << what;
        EXPECT_EQ(Status(), error) << what;
        const QRect place = Grid()->visualRect(Grid()->currentIndex());
        EXPECT_TRUE(Grid()->viewport()->rect().intersects(place)) << what << ": not in view";
    }
    EXPECT_TRUE(boxes.TakeTexts().empty());
    EXPECT_EQ(Stored("DISTINCT UpdPGName"), "") << "nothing has been written";
    Grid()->clearSelection();
    for (const int row : {30, 35, 41})
        screen->List().SetCell(row, Error, "");
}

TEST_F(ListScreenTest, TheDetailOfOneStoredLine)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2);
    Show();
    ClickCell(Order, 1);
    ClickCell(Order, 2, Qt::ShiftModifier);
    Click("cmdDetail");
    ClickCell(Order, 1);
    Click("cmdCopy");
    ClickCell(Order, 2);
    Click("cmdDetail");
    EXPECT_EQ(boxes.TakeTexts(),
              (std::vector<QString>{"複数行の指定は出来ません",
                                    "まだ未登録のデータなので、詳細を表示できません\r"}));

    // What the list holds is what the dialog begins with; leaving it changes nothing.
    ClickCell(AnswerDate, 3);
    Keys("260601");
    Key(Qt::Key_Tab, Qt::ShiftModifier);
    const QString before = WholeRow(3);
    Operator hand;
    hand.At("SC030120", "by the button", [&] {
        EXPECT_EQ(hand.Find<QLineEdit>("txtAnsLimDate")->text(), "260601");
        EXPECT_EQ(Trim(hand.Find<QLineEdit>("txtAnsVal")->text()), "100");
        hand.Type("txtAnsVal", "5");
        hand.Key(Qt::Key_Escape);
    });
    hand.Start();
    ClickCell(Order, 3);
    Click("cmdDetail");
    EXPECT_EQ(hand.Failure(), "");
    EXPECT_TRUE(hand.IsDone());
    EXPECT_EQ(WholeRow(3), before);

    Operator again;
    again.At("SC030120", "by a double click", [&] {
        again.Type("txtAnsVal", "12.5");
        again.Type("txtAnsLimDate", "260520");
        again.Click("cmdRegister");
    });
    again.Start();
    const QModelIndex cell = Grid()->model()->index(2, int(Contract) - 1);
    QTest::mouseDClick(Grid()->viewport(), Qt::LeftButton, {}, Grid()->visualRect(cell).center());
    EXPECT_TRUE(again.IsDone()) << again.Failure().toStdString();
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"登録されました\r"});
    EXPECT_EQ(Cells(3, {AnswerQuantity, AnswerDate, LoadedDate, LoadedQuantity}),
              "12.500|26/05/20|20260520|12.500");
    EXPECT_EQ(Stored("AnsLimDate, AnsVal", "ShpSubNo = 2"), "20260520|12.5");
    EXPECT_FALSE(state.isReloadNeeded);
}
