#include "ListFixture.h"

#include "answerlist/SC030110.h"
#include "output/AnswerCreation.h"
#include "support/Operator.h"
#include "support/WindowHands.h"

#include <QLabel>
#include <optional>

namespace {

using enum ListColumn;
using Texts = std::vector<QString>;

constexpr auto BadDate = "日付の入力が間違っています\r";
constexpr auto ShippedHint = "出荷済のものの変更、納期回答作成は出来ません";
constexpr int Date = int(AnswerDate);
constexpr int Quantity = int(AnswerQuantity);

/// The list of four lines: 1 open, 2 shipped, 3 open, 4 a split line that was stored and answered.
class ListScreen : public ListFixture, public WindowHands
{
protected:
    ListScreen()
    {
        Change("TLMT0040", "1", "NokiInfKBN = 0");
        for (const int accNo : {1, 2, 3, 4})
            AddOrder(accNo);
        AddLine(1, 1, 1);
        AddLine(2, 1, 1, "ShpSts = 3");
        AddLine(3, 1, 1);
        AddLine(4, 1, 1, "IndVal = 0, AnsVal = 5, AnsLimUmu = 3");
    }

    void Show()
    {
        state.isReloadNeeded = true;
        screen.emplace(state, [this](AnswerList &answers, const WriteStamp &stamp,
                                     const ShowStatusText &showStatus) {
            AnswerCreation(state.db, state.files, answers, stamp, showStatus).MakeAnswers();
        });
        shownList = &screen->List();
        window = &*screen;
        screen->show();
        screen->activateWindow();
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return !state.isReloadNeeded || !screen->isVisible(); }));
        if (screen->isVisible()) {
            EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        }
    }

    SpreadGrid &Grid() { return *shownList->Grid(); }
    QString Status() { return Find<QLabel>("MSG")->text(); }

    QString SelectedRows()
    {
        QString rows;
        for (int row = 1; row <= shownList->RowCount(); ++row)
            if (shownList->IsSelected(row))
                rows += QString::number(row);
        return rows;
    }

    QString Dates()
    {
        QStringList dates;
        for (int row = 1; row <= shownList->RowCount(); ++row)
            dates += Cell(row, AnswerDate) + Cell(row, Marks).right(1).trimmed();
        return dates.join(',');
    }

    std::optional<SC030110> screen;
};

} // namespace

TEST_F(ListScreen, AppearsWithItsLinesAndNothingSelected)
{
    state.conditions.customerCode = "C1";
    state.conditions.customerName = "青葉電機";
    state.conditions.toDate = "20261231";
    const std::pair<const char *, const char *> bases[]
        = {{"SHPDATE", "出荷（予定）"}, {"LIMDATE", "指定納期"}, {"ACCDATE", "受注日"}};
    for (const auto &[basis, name] : bases) {
        state.conditions.dateBasis = basis;
        Show();
        EXPECT_EQ(Find<QLabel>("lblDate")->text(), name);
    }
    EXPECT_EQ(Text("txtCustCD") + ' ' + Text("txtCustName"), "C1 青葉電機");
    EXPECT_EQ(Text("txtFromAccDate") + '-' + Text("txtToAccDate"), "-26/12/31");
    EXPECT_EQ(Text("txtSum"), "4");
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(Find<QLabel>("DATE")->text(), "26/05/01");
    EXPECT_EQ(SelectedRows(), "");
    EXPECT_EQ(shownList->ActiveRow(), 1);
    EXPECT_EQ(Focus(), "spdList");

    Change("TLSP0010", "AccNo = 3", "DenKBN = 15");
    Show();
    EXPECT_EQ(Status(), "不良品の明細は、紫色で表示されます");
}

TEST_F(ListScreen, WithoutLinesItClosesItself)
{
    file.Run("DELETE FROM TLSP0010");
    Show();
    EXPECT_FALSE(screen->isVisible());
    EXPECT_TRUE(state.isReloadNeeded);
    EXPECT_EQ(boxes.TakeTexts(), Texts{"データが存在しません\r"});
    EXPECT_EQ(Text("txtSum"), "0");
    for (const char *button : {"cmdCopy", "cmdDelete", "cmdMake", "cmdDetail", "cmdLimSet"})
        EXPECT_FALSE(Find(button)->isEnabled()) << button;
    for (const char *button : {"cmdExit", "cmbLimDef"})
        EXPECT_TRUE(Find(button)->isEnabled()) << button;

    file.Run("DROP TABLE TLMT0040");
    Show();
    EXPECT_FALSE(screen->isVisible());
    ASSERT_EQ(boxes.Shown().size(), 1u) << "a database error is told once";
    EXPECT_EQ(boxes.Shown()[0].title, "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ");
}

TEST_F(ListScreen, TheCountFollowsCopyAndDelete)
{
    file.Run("INSERT INTO TLAC0010 (AccNo, CustCD, ShpSts, DpoFlg) WITH RECURSIVE n(i) AS (SELECT 5"
             " UNION ALL SELECT i + 1 FROM n WHERE i < 999) SELECT i, 'C1', 1, 0 FROM n");
    file.Run("INSERT INTO TLSP0010 (AccNo, AccSubNo, ShpSubNo, CustCD, DenKBN, ShpSts, DpoFlg)"
             " SELECT AccNo, 1, 1, 'C1', 2, 1, 0 FROM TLAC0010 WHERE AccNo > 4");
    Show();
    EXPECT_EQ(Text("txtSum"), "999");
    ClickCell(Grid(), Quantity, 1);
    Keys(".5");
    Click("cmdCopy"); // takes what has just been typed
    EXPECT_EQ(Cell(1, AnswerQuantity) + ' ' + Cell(2, AnswerQuantity), "0.500 99.500");
    EXPECT_EQ(Text("txtSum"), "1,000");
    ClickCell(Grid(), int(Order), 2);
    boxes.Press(BoxButton::No);
    Click("cmdDelete");
    EXPECT_EQ(Text("txtSum"), "1,000");
    boxes.Press(BoxButton::Yes);
    Click("cmdDelete");
    EXPECT_EQ(Text("txtSum"), "999");
    EXPECT_EQ(shownList->ActiveRow(), 2);
}

TEST_F(ListScreen, CommandsAskForTheRowsTheyNeed)
{
    const QString noDateRow = "納期を設定したい行を選択してください\r";
    const QString onlyShipped
        = "出荷済のものしか、選択されていません\rこのデータの変更は出来ません";
    const QString noRow = "有効な行を選択してください\r";
    const QString severalRows = "複数行の指定は出来ません";
    const struct
    {
        const char *button;
        std::vector<int> rows; ///< selected
        QString told;
    } cases[] = {{"cmdLimSet", {}, noDateRow},
                 {"cmbLimDef", {}, noDateRow},
                 {"cmdLimSet", {2}, onlyShipped},
                 {"cmbLimDef", {2}, onlyShipped},
                 {"cmdCopy", {}, noRow},
                 {"cmdDelete", {}, noRow},
                 {"cmdCopy", {1, 3}, severalRows},
                 {"cmdDelete", {1, 3}, severalRows},
                 {"cmdDetail", {1, 3}, severalRows}};
    Show();
    for (const auto &[button, rows, told] : cases) {
        Grid().clearSelection();
        for (const int row : rows)
            ClickRow(Grid(), row, Qt::ControlModifier);
        Click(button);
        EXPECT_EQ(boxes.TakeTexts(), Texts{told}) << button << ' ' << rows.size();
    }
    EXPECT_TRUE(boxes.Prompts().empty());
    EXPECT_EQ(Dates(), ",,,");
    EXPECT_EQ(shownList->RowCount(), 4);
}

TEST_F(ListScreen, DatesAreSetByTypingAndByBothButtons)
{
    Show();
    ClickCell(Grid(), Date, 1);
    Keys("260601");
    Key(Qt::Key_Return);
    EXPECT_EQ(Dates(), "26/06/01*,,,");
    ClickRow(Grid(), 1);
    ClickRow(Grid(), 3, Qt::ShiftModifier);
    const struct
    {
        const char *typed, *dates;
        Texts told;
    } answers[] = {{"260602", "26/06/02*,,26/06/02*,", {}},
                   {"", "26/06/02*,,26/06/02*,", {}},
                   {"260631", "26/06/02*,,26/06/02*,", {BadDate}}};
    for (const auto &[typed, dates, told] : answers) {
        boxes.Type(typed);
        Click("cmdLimSet");
        EXPECT_EQ(boxes.TakeTexts(), told) << typed;
        EXPECT_EQ(Dates(), dates) << typed;
    }
    Click("cmbLimDef");
    EXPECT_EQ(Dates(), "26/05/20,,26/05/20,");
    EXPECT_TRUE(Grid().Redraw());
}

TEST_F(ListScreen, NoCommandRunsPastAWrongText)
{
    const std::pair<const char *, Qt::Key> commands[]
        = {{"cmdLimSet", Qt::Key_S}, {"cmbLimDef", Qt::Key_L}, {"cmdCopy", Qt::Key_C},
           {"cmdDelete", Qt::Key_D}, {"cmdDetail", Qt::Key_I}, {"cmdMake", Qt::Key_M},
           {"cmdExit", Qt::Key_X}};
    Show();
    const QString before = WholeRow(1);
    for (const auto &[button, key] : commands) {
        for (const bool isByKey : {false, true}) {
            SCOPED_TRACE(std::string(button) + (isByKey ? " by key" : " by mouse"));
            ClickCell(Grid(), Date, 1);
            Keys("260631");
            if (isByKey)
                Alt(key);
            else
                Click(button);
            EXPECT_EQ(boxes.TakeTexts(), Texts{BadDate});
            EXPECT_EQ(Focus(), "cellEditor");
            EXPECT_TRUE(screen->isVisible());
            Key(Qt::Key_Escape);
            EXPECT_TRUE(screen->isVisible()) << "Esc ends the edit, not the screen";
            EXPECT_EQ(WholeRow(1), before);
            EXPECT_EQ(shownList->RowCount(), 4);
        }
    }
    Click("cmdExit");
    EXPECT_FALSE(screen->isVisible());
}

TEST_F(ListScreen, MakeStaysAtTheRowInErrorUntilItIsMended)
{
    AddOrder(5);
    for (int line = 1; line <= 40; ++line)
        AddLine(5, 1, line);
    Show();
    ClickRow(Grid(), 1);
    ClickRow(Grid(), 3, Qt::ShiftModifier);
    Click("cmbLimDef");
    ClickCell(Grid(), Quantity, 3);
    Keys("0");
    Key(Qt::Key_Return);
    ClickRow(Grid(), 3);
    ClickRow(Grid(), 1, Qt::ShiftModifier);
    Grid().scrollToBottom();
    Click("cmdMake");
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_EQ(shownList->ActiveRow(), 3);
    const QRect place = Grid().visualRect(Grid().currentIndex());
    EXPECT_TRUE(Grid().viewport()->rect().intersects(place)) << "not in view";
    EXPECT_EQ(Status(), "回答数量が、0です");
    Grid().setFocus();
    Key(Qt::Key_Up);
    EXPECT_EQ(Status(), ShippedHint);
    Key(Qt::Key_Up);
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(Stored("DISTINCT UpdPGName"), "") << "nothing has been written";

    ClickCell(Grid(), Quantity, 3);
    EXPECT_EQ(Status(), "回答数量が、0です");
    Keys("5");
    Click("cmdMake"); // ends the edit first
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_TRUE(boxes.TakeTexts()[0].startsWith("納期回答作成処理が終了しました"));
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(Cell(3, Error), "");
    EXPECT_EQ(Stored("AnsVal, AnsLimUmu", "AccNo = 3"), "5.0|3");
}

TEST_F(ListScreen, TheDetailBeginsWithTheListAndLeavesItAlone)
{
    Show();
    ClickCell(Grid(), Date, 3);
    Keys("260601");
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    const QString before = WholeRow(3);
    Operator hand;
    hand.At("SC030120", "detail", [&] {
        EXPECT_EQ(hand.Find<QLineEdit>("txtAnsLimDate")->text(), "260601");
        EXPECT_EQ(hand.Find<QLineEdit>("txtAnsVal")->text().trimmed(), "100");
        hand.Type("txtAnsVal", "5");
        hand.Key(Qt::Key_Escape);
    });
    hand.Start();
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, CellPoint(Grid(), int(Contract), 3));
    EXPECT_TRUE(hand.IsDone()) << hand.Failure().toStdString();
    EXPECT_EQ(WholeRow(3), before);
}

TEST_F(ListScreen, KeyboardAloneThroughTheWholeScreen)
{
    Show();
    Key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(SelectedRows(), "1");
    boxes.Type("260610");
    Alt(Qt::Key_S);
    EXPECT_EQ(Cell(1, AnswerDate), "26/06/10");
    Alt(Qt::Key_L);
    EXPECT_EQ(Cell(1, AnswerDate), "26/05/20");
    Alt(Qt::Key_C);
    EXPECT_EQ(Text("txtSum"), "5");

    // Tab goes round the buttons and comes back to the grid.
    Grid().setFocus();
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
    EXPECT_EQ(Text("txtSum"), "4");

    Grid().setFocus();
    Key(Qt::Key_Home, Qt::ControlModifier);
    Key(Qt::Key_Space, Qt::ShiftModifier);
    Operator hand;
    hand.At("SC030120", "detail", [&] {
        hand.Keys("260612");
        hand.Key(Qt::Key_Return);
        hand.Keys("33");
        for (int enter = 0; enter < 3; ++enter)
            hand.Key(Qt::Key_Return);
    });
    hand.Start();
    Key(Qt::Key_I, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return hand.IsDone(); })) << hand.Failure().toStdString();
    screen->activateWindow(); // as a window manager does when a dialog closes
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(boxes.TakeTexts(), Texts{"登録されました\r"});
    EXPECT_EQ(Cells(1, {AnswerQuantity, AnswerDate, LoadedDate}), "33.000|26/06/12|20260612");
    EXPECT_FALSE(state.isReloadNeeded);

    Alt(Qt::Key_M);
    ASSERT_EQ(boxes.Shown().size(), 1u);
    EXPECT_TRUE(boxes.TakeTexts()[0].startsWith("納期回答作成処理が終了しました"));
    EXPECT_TRUE(shownList->Row(1).IsAnswered());
    EXPECT_EQ(Stored("AnsVal, AnsLimDate, AnsLimUmu", "AccNo = 1"), "33.0|20260612|3");
    Alt(Qt::Key_X);
    EXPECT_FALSE(screen->isVisible());
}
