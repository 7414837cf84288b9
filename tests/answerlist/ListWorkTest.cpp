#include "answerlist/ListScreen.h"

#include "forms/WindowMemory.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>

namespace {

/// What the operator does to the list between loading it and creating the answers.
class ListWork : public ListScreen
{
protected:
    ListWork() { WindowMemory::ForgetAll(); }
    ~ListWork() override { WindowMemory::ForgetAll(); }

    QString Counts() { return Find<QLabel>("lblCounts")->text().replace("　　", "|"); }
    QString Mark(int row)
    {
        return Grid().model()->headerData(row - 1, Qt::Vertical, Qt::ToolTipRole).toString();
    }
    QString Answer(int row) { return Cell(row, AnswerQuantity) + ' ' + Cell(row, AnswerDate); }
    void Undo() { Key(Qt::Key_Z, Qt::ControlModifier); }
};

} // namespace

TEST_F(ListWork, ChangesAreCountedMarkedAndTakenBack)
{
    Change("TLSP0010", "AccNo = 1", "LimDate = '20260430'"); // yesterday
    Show();
    EXPECT_EQ(Counts(), "選択 0|変更 0|未回答 2|納期超過 1");
    // Quantity, date, the next row's quantity: by Tab alone, in an edit and outside one.
    Grid().setFocus();
    Key(Qt::Key_Tab);
    Keys("30");
    Key(Qt::Key_Tab);
    Keys("260601");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Cursor(), "1 5,3") << "past the shipped line";
    Keys("60");
    Key(Qt::Key_Return);
    EXPECT_EQ(Answer(1) + '|' + Answer(3), "30.000 26/06/01|60.000 ");
    EXPECT_EQ(Counts(), "選択 2|変更 2|未回答 2|納期超過 1");
    EXPECT_EQ(Mark(1) + Mark(2) + Mark(3), "変更あり（未登録）変更あり（未登録）");

    // An arrow leaves the selection behind; one key selects again what was changed.
    Key(Qt::Key_Up);
    EXPECT_EQ(Cursor(), "3 5,3");
    Key(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Cursor(), "13 5,3");

    Key(Qt::Key_Delete);
    EXPECT_EQ(Answer(1) + '|' + Answer(3), "30.000 |60.000 ") << "the dates of the selected rows";
    Undo();
    EXPECT_EQ(Answer(1) + '|' + Answer(3), "30.000 26/06/01|60.000 ");
    Undo();
    EXPECT_EQ(Answer(3) + Mark(3), "100.000 ");
    EXPECT_EQ(Cursor(), "1 5,3") << "what the edit selected is selected no more";
    Undo();
    Undo();
    EXPECT_EQ(Answer(1) + Mark(1), "100.000 ");
    EXPECT_EQ(Counts(), "選択 0|変更 0|未回答 2|納期超過 1");
    Undo();
    EXPECT_EQ(Status(), "元に戻す変更はありません");

    // Without a selection Delete is for the row of the frame.
    TypeInto(AnswerDate, 3, "260601");
    Key(Qt::Key_Up);
    Grid().clearSelection();
    Grid().Activate(AnswerDate, 3);
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Answer(3), "100.000 ");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(ListWork, ACopyIsComeToAndCanGoAndComeBack)
{
    Show();
    TypeInto(AnswerQuantity, 1, "30");
    Key(Qt::Key_Return);
    EXPECT_EQ(Find<QLabel>("REMAINDER")->text(), "");
    Alt(Qt::Key_C);
    EXPECT_EQ(Cursor(), "1 5,2");
    EXPECT_EQ(Focus(), "spdList");
    EXPECT_EQ(Answer(2) + Mark(2), "70.000 複写（未登録）");
    EXPECT_EQ(Find<QLabel>("REMAINDER")->text(), "注残 100 － 回答計 100 ＝ 残り 0");
    Keys("60.5");
    Key(Qt::Key_Up);
    EXPECT_EQ(Find<QLabel>("REMAINDER")->text(), "注残 100 － 回答計 90.5 ＝ 残り 9.5");

    Select({2});
    boxes.Press(BoxButton::Yes);
    Alt(Qt::Key_D);
    EXPECT_EQ(Text("txtSum"), "4");
    EXPECT_EQ(Find<QLabel>("REMAINDER")->text(), "") << "nothing is split any more";
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Text("txtSum"), "5");
    EXPECT_EQ(Answer(2), "60.500 ");
    Undo();
    Undo();
    EXPECT_EQ(Text("txtSum"), "4");
    EXPECT_EQ(Answer(1), "30.000 ");
    EXPECT_EQ(Answer(2), "0.000 ") << "the shipped line";
}

TEST_F(ListWork, HiddenLinesAreNeitherSelectedNorAnswered)
{
    Show();
    Select({2, 3, 4});
    Alt(Qt::Key_U);
    EXPECT_EQ(Counts(), "選択 1|変更 0|未回答 2|納期超過 0|表示 2");
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Counts(), "選択 2|変更 0|未回答 2|納期超過 0|表示 2");
    // A row's number is that of the whole list; commands work on the lines that are seen.
    EXPECT_EQ(Grid().model()->headerData(1, Qt::Vertical, Qt::DisplayRole).toInt(), 3);
    Select({2});
    Alt(Qt::Key_C);
    EXPECT_EQ(Answer(4) + Mark(2), "0.000 ");
    Alt(Qt::Key_L);
    EXPECT_EQ(Answer(3), "100.000 26/05/20");
    EXPECT_EQ(Answer(1) + '|' + Answer(2) + '|' + Answer(4) + '|' + Answer(5),
              "100.000 |0.000 |0.000 |5.000 ");
    Undo();
    Undo();
    Alt(Qt::Key_L);
    Alt(Qt::Key_M);
    EXPECT_EQ(Stored("AccNo", "AnsLimUmu = 3"), "3 4");
    EXPECT_EQ(Counts(), "選択 0|変更 0|未回答 1|納期超過 0|表示 1") << "what is answered goes";

    // The next list is shown as this one was left.
    screen->close();
    Show();
    EXPECT_EQ(Grid().model()->rowCount(), 1);
    Alt(Qt::Key_U);
    EXPECT_EQ(Grid().model()->rowCount(), 4);
    screen->close();
    Show();
    EXPECT_FALSE(Find<QCheckBox>("chkOpenOnly")->isChecked());
}

TEST_F(ListWork, WhoStandsOnALineThatIsHiddenGoesOnWithTheNext)
{
    AddLine(4, 1, 2);
    AddLine(4, 1, 3);
    Show();
    for (const auto &[row, next] : {std::pair(2, 3), {4, 5}, {6, 6}}) {
        Grid().Activate(AnswerDate, row);
        Alt(Qt::Key_U);
        const int shown = Grid().ActiveRow();
        EXPECT_EQ(Grid().model()->headerData(shown - 1, Qt::Vertical, Qt::DisplayRole), next);
        Alt(Qt::Key_U);
    }
    Change("TLSP0010", "AccNo = 4", "AnsLimUmu = 3");
    Show();
    Grid().Activate(AnswerDate, 6); // nothing is shown behind it
    Alt(Qt::Key_U);
    EXPECT_EQ(Cursor(), " 6,2");
}

TEST_F(ListWork, WhatChangesNothingSelectsNothing)
{
    Show();
    Grid().setFocus();
    Grid().Activate(AnswerDate, 1);
    Key(Qt::Key_Delete);
    EXPECT_EQ(Cursor(), " 6,1") << "no date was there to be deleted";
    Grid().Activate(AnswerQuantity, 1);
    QApplication::clipboard()->setText("100\n\n30");
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Counts(), "選択 1|変更 1|未回答 2|納期超過 0");
    EXPECT_EQ(Answer(3), "30.000 ");
    Undo();
    EXPECT_EQ(Counts(), "選択 0|変更 0|未回答 2|納期超過 0");
}

TEST_F(ListWork, WhatIsOverdueIsSoFromMidnightOn)
{
    Change("TLSP0010", "AccNo = 1", "LimDate = '20260501'"); // today
    Show();
    Select({1});
    Alt(Qt::Key_C);
    EXPECT_EQ(Counts(), "選択 1|変更 1|未回答 3|納期超過 0");
    SetClock([] { return QDateTime({2026, 5, 2}, {0, 0, 1}); });
    Select({2});
    EXPECT_EQ(Counts(), "選択 1|変更 1|未回答 3|納期超過 2");
    boxes.Press(BoxButton::Yes);
    SetClock([] { return QDateTime({2026, 5, 3}, {0, 0, 1}); });
    Alt(Qt::Key_D);
    EXPECT_EQ(Counts(), "選択 0|変更 0|未回答 2|納期超過 1");
}

TEST_F(ListWork, ATextIsFoundWhereverItStands)
{
    Change("TLSP0010", "AccNo = 3", "OdrNo = 'ｱﾍﾞ-300', CustSecCD = 'Q9'");
    Change("TLAC0010", "AccNo = 2", "AccHinName = 'コンデンサ'");
    Show();
    const auto find = [&](const QString &text) {
        Key(Qt::Key_F, Qt::ControlModifier);
        EXPECT_EQ(Focus(), "txtFind");
        EXPECT_TRUE(text.isEmpty() || Box("txtFind")->selectedText() == Text("txtFind"));
        Box("txtFind")->setText(text);
        Key(Qt::Key_Return);
        return Grid().ActiveRow();
    };
    EXPECT_EQ(find("アベ"), 3) << "half or full width";
    EXPECT_EQ(find("q9"), 3);
    EXPECT_EQ(Status(), "一覧の端まで検索したので、反対の端から続けました");
    EXPECT_EQ(find("ｺﾝﾃﾞﾝｻ"), 2);
    EXPECT_EQ(find("po-"), 4);
    Key(Qt::Key_Escape);
    EXPECT_EQ(Focus(), "spdList");
    EXPECT_TRUE(screen->isVisible());
    Key(Qt::Key_F3);
    EXPECT_EQ(Grid().ActiveRow(), 1);
    Key(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(Grid().ActiveRow(), 4);
    EXPECT_EQ(find("どこにもない"), 4);
    EXPECT_EQ(Status(), "「どこにもない」は、一覧にありません");
    EXPECT_EQ(Cursor(), " 1,4") << "nothing is selected by looking";
    Alt(Qt::Key_U);
    find("ｺﾝﾃﾞﾝｻ");
    EXPECT_EQ(Status(), "「ｺﾝﾃﾞﾝｻ」は、表示している未回答の明細にありません");
}

TEST_F(ListWork, ARowThatAKeyHasOnlyPassedIsNotAnswered)
{
    const std::pair<std::function<void()>, const char *> cases[] = {
        {[] {}, "1 6,2"},
        {[&] { Key(Qt::Key_Tab); }, "1 6,2"},
        {[&] { Key(Qt::Key_Space, Qt::ShiftModifier); }, "13 6,2"},
        {[&] { Key(Qt::Key_Space); }, "13 6,2"},
        {[&] { ClickRow(Grid(), 3); }, "13 6,2"},
        {[&] {
             InDetail([](Operator &hand) {
                 QTest::qWait(0);
                 hand.Find<QLineEdit>("txtAnsVal")->setText("7");
                 hand.Key(Qt::Key_R, Qt::AltModifier);
             });
         },
         "13 6,2"},
    };
    int number = 0;
    for (const auto &[mean, cursor] : cases) {
        SCOPED_TRACE(number++);
        Show();
        Grid().setFocus();
        Key(Qt::Key_Down);
        Key(Qt::Key_Down);
        EXPECT_EQ(Cursor(), "3 1,3");
        mean();
        Grid().Activate(AnswerDate, 1);
        Keys("260601");
        Key(Qt::Key_Return);
        EXPECT_EQ(Cursor(), cursor);
    }
    Key(Qt::Key_Down);
    Keys("260602");
    Key(Qt::Key_Tab);
    Keys("4");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Cursor(), "34 6,4") << "it has been changed itself";
    Key(Qt::Key_Up);
    Key(Qt::Key_Up);
    Grid().Activate(AnswerDate, 1);
    QApplication::clipboard()->setText("26/06/03");
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Cursor(), "1 6,1") << "pasted as typed";
    // A blank is no text.
    Grid().Activate(AnswerDate, 1);
    Key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(Cursor(), " 6,1");
    EXPECT_EQ(Focus(), "spdList");
}

TEST_F(ListWork, CommandsAreForTheRowThatWasFound)
{
    Show();
    TypeInto(AnswerDate, 1, "260601");
    Key(Qt::Key_Return);
    const auto find = [&](const QString &text) {
        Key(Qt::Key_F, Qt::ControlModifier);
        Box("txtFind")->setText(text);
        Key(Qt::Key_Return);
        Key(Qt::Key_Escape);
    };
    Key(Qt::Key_Down);
    EXPECT_EQ(Cursor(), "3 6,3");
    find("PO-1");
    Key(Qt::Key_Delete);
    EXPECT_EQ(Cursor(), "1 6,1") << "the row that was passed by is not meant";
    Undo();
    Key(Qt::Key_Space, Qt::ShiftModifier);
    find("PO-3");
    EXPECT_EQ(Cursor(), "1 6,3");
    ExpectDetail("PO-3");
    Alt(Qt::Key_L);
    EXPECT_EQ(Answer(1) + '|' + Answer(3), "100.000 26/06/01|100.000 26/05/20");
    EXPECT_EQ(Status(), "1 行に回答納期を付けました。Ctrl+Z で元に戻せます");
    EXPECT_EQ(Cursor(), "13 6,3") << "what has been changed is meant";
    Key(Qt::Key_Delete);
    EXPECT_EQ(Answer(1) + '|' + Answer(3), "100.000 |100.000 ") << "the selected rows again";
    EXPECT_EQ(Status(), "2 行の回答納期を消しました。Ctrl+Z で元に戻せます");
    Undo();
    find("PO-4");
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_Delete);
    EXPECT_EQ(Status(), "2 行の回答納期を消しました。Ctrl+Z で元に戻せます");
    Undo();
    for (int time = 0; time < 2; ++time) { // a selection that does not change ends it, too
        find("PO-4");
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_Delete);
        EXPECT_EQ(Status(), "2 行の回答納期を消しました。Ctrl+Z で元に戻せます");
        Undo();
    }
    Select({1});
    find("PO-4");
    Alt(Qt::Key_D);
    EXPECT_EQ(boxes.TakeTexts().front(),
              "削除されませんでした\rこのデータは 分納データではありません");
    Grid().setFocus();
    Key(Qt::Key_Return, Qt::ShiftModifier);
    ExpectDetail("PO-1");
}

TEST_F(ListWork, ChangesThatAreNotAnsweredAreFoundAgain)
{
    Show();
    TypeInto(AnswerDate, 4, "260601"); // answered, and hidden below
    TypeInto(AnswerDate, 1, "260601");
    TypeInto(AnswerDate, 3, "260601");
    Key(Qt::Key_Return);
    file.Refuse("UPDATE", "NEW.AnsLimUmu = 3 AND OLD.AnsLimUmu = 0");
    boxes.Press(BoxButton::Yes); // some are not selected
    Alt(Qt::Key_M);
    EXPECT_EQ(Counts().section('|', 1, 1), "変更 0") << "registered, but not answered";
    Grid().clearSelection();
    Alt(Qt::Key_U);
    EXPECT_EQ(Grid().model()->rowCount(), 2);
    Grid().setFocus();
    Key(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Grid().model()->rowCount(), 4);
    EXPECT_EQ(Cursor().section(' ', 0, 0), "134");
}

TEST_F(ListWork, TheGridIsLeftByOneKeyAndItsHeadingsSelectNothing)
{
    Show();
    for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
        Grid().setFocus();
        Grid().Activate(AnswerQuantity, 1);
        Keys("5");
        EXPECT_EQ(Focus(), "cellEditor");
        Key(modifiers ? Qt::Key_Tab : Qt::Key_F6, modifiers);
        EXPECT_EQ(Focus(), "cmdLimSet");
        Key(modifiers ? Qt::Key_Tab : Qt::Key_F6, modifiers);
        EXPECT_EQ(Focus(), "spdList");
    }
    EXPECT_EQ(Answer(1), "5.000 ");
    Grid().clearSelection();
    const QHeaderView *header = Grid().horizontalHeader();
    for (int column = 0; column < header->count(); ++column)
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 8, 8});
    EXPECT_TRUE(Grid().SelectedRowRanges().empty());

    Grid().Activate(AnswerQuantity, 1);
    Keys("12");
    Key(Qt::Key_Home, Qt::ControlModifier);
    Keys("3");
    Key(Qt::Key_End, Qt::ControlModifier);
    Keys("4");
    Key(Qt::Key_PageDown);
    Key(Qt::Key_Return);
    EXPECT_EQ(Answer(1), "3,124.000 ") << "keys that an editor has no use for stay in it";
}

TEST_F(ListWork, TextsHaveTheirRoom)
{
    Change("TLSP0010", "AccNo = 3", "AccVal = 123456789.125, CustSecCD = 'とても長い部門のコード'");
    for (int order = 5; order <= 30; ++order)
        AddOrder(order), AddLine(order, 1, 1);
    Show();
    screen->resize(1600, 700);
    const auto *header = Grid().horizontalHeader();
    int total = 0;
    for (int column = 0; column < header->count(); ++column) {
        total += header->sectionSize(column);
        for (int row = 0; row < RowCount(); ++row)
            EXPECT_LE(Grid().sizeHintForIndex(Grid().model()->index(row, column)).width(),
                      header->sectionSize(column))
                << row << ' ' << column;
        EXPECT_LE(header->sectionSizeHint(column), header->sectionSize(column)) << column;
    }
    EXPECT_EQ(total, Grid().viewport()->width());

    // What was hidden has its room when it is shown, and so have marks beside any row's number.
    Change("TLSP0010", "AccNo > 3", "AnsLimUmu = 3, AccVal = 987654321.125");
    Alt(Qt::Key_U);
    Show();
    Alt(Qt::Key_U);
    EXPECT_LE(Grid().sizeHintForIndex(Grid().model()->index(5, 2)).width(),
              Grid().horizontalHeader()->sectionSize(2));
    const int width = Grid().verticalHeader()->width();
    TypeInto(AnswerDate, 15, "260601");
    Key(Qt::Key_Return);
    EXPECT_EQ(Grid().verticalHeader()->width(), width);
}
