#include "ListFixture.h"

#include "answerlist/LineSplit.h"

namespace {

using LineSplitTest = ListFixture;
using enum ListColumn;

} // namespace

TEST_F(LineSplitTest, ACopyTakesTheOrderAndWhatIsLeft)
{
    AddOrder(1, "EDIKBN = 1");
    AddLine(1, 1, 1,
            "AnsVal = 30, AnsLimDate = '20260601', AnsMark = '2', AnsLimUmu = 3, MfactNo = '1'");
    AddLine(1, 1, 2, "DenKBN = 15, IndVal = 50, ShpVal = 9, MfactNo = '2'");
    Load();
    list.SetCell(1, Skipped, "x");
    const QString source = WholeRow(1);
    CopyLine(list, 1);
    EXPECT_EQ(WholeRow(1), source);
    EXPECT_EQ(WholeRow(2), "*/ |PO-1/HIN-1/抵抗器/SUS|100.000/100.000|0.000/0.000|20.000||"
                           "26/05/20/P1|　/　|A 確定注文１型取引/SEC|1|1|||0.000|2|"
                           "C:\\OUT\\C1.TXT|x");
    EXPECT_FALSE(list.IsDefective(2));
    CopyLine(list, 3);
    EXPECT_TRUE(list.IsDefective(4)) << "a copy has the colour of its source";
    EXPECT_EQ(list.RowCount(), 4);
}

TEST_F(LineSplitTest, WhatIsLeftIsThatOfTheSubLine)
{
    const struct
    {
        std::vector<const char *> answers; ///< of the order sub-line's rows, instructed 100
        const char *left;
    } cases[] = {{{"30"}, "70.000"},
                 {{"60", "40"}, "0.000"},
                 {{"60", "40.001"}, "0.000"}, // never less than nothing
                 {{"33.333", "33.333"}, "33.334"},
                 {{"0"}, "0.000"}}; // without an answer all is proposed
    AddOrder(1);
    AddOrder(2);
    for (const auto &[answers, left] : cases) {
        file.Run("DELETE FROM TLSP0010");
        int shpSubNo = 0;
        for (const char *answer : answers)
            AddLine(1, 1, ++shpSubNo, QString("AnsVal = %1").arg(answer));
        AddLine(1, 2, ++shpSubNo, "AnsVal = 50"); // another sub-line of the order
        AddLine(2, 1, 1, "AnsVal = 50");          // another order
        Load();
        CopyLine(list, 1);
        EXPECT_EQ(Cell(2, AnswerQuantity), left) << answers.back();
    }
}

TEST_F(LineSplitTest, CopiesOfCopiesAndOfShippedLines)
{
    AddOrder(1);
    AddLine(1, 1, 1, "AnsVal = 30");
    AddLine(1, 1, 2, "AnsVal = 10, ShpSts = 3");
    Load();
    EXPECT_TRUE(CheckSingleRow(list)) << "the detail needs no selection";
    CopyLine(list, 1);
    CopyLine(list, 2);
    EXPECT_EQ(Cells(2, {LineQuantities, AnswerQuantity}), "0.000/0.000|60.000");
    EXPECT_EQ(Cells(3, {LineQuantities, AnswerQuantity}), "0.000/0.000|0.000");
    // The copy that takes the place of a shipped line's row is open.
    CopyLine(list, 4);
    EXPECT_EQ(Cell(5, States), "　/　");
    EXPECT_FALSE(list.IsLocked(5));
    EXPECT_TRUE(list.IsLocked(4));
    EXPECT_EQ(list.RowsOfOrder(1), (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST_F(LineSplitTest, WhatMayNotBeDeleted)
{
    const std::pair<const char *, QString> cases[]
        = {{"IndVal = 0.001", "このデータは 分納データではありません"},
           {"IndVal = 1, ShpSts = 3, AnsLimUmu = 3", "このデータは 分納データではありません"},
           {"IndVal = 0, ShpSts = 3, AnsLimUmu = 3", "このデータは 出荷済です"},
           {"IndVal = 0, AnsLimUmu = 3", "このデータは 納期回答済です"}};
    AddOrder(1);
    for (const auto &[line, text] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1, line);
        AddLine(1, 1, 2);
        Load();
        EXPECT_FALSE(DeleteLine(state.db, list, 1));
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"削除されませんでした\r" + text}) << line;
        EXPECT_EQ(list.RowCount(), 2);
        EXPECT_EQ(Stored("ShpSubNo"), "1 2") << line;
    }
}

TEST_F(LineSplitTest, ASplitIsDeletedWhenConfirmed)
{
    const QString question = "削除してもよろしいですか\r";
    const QString lastLine
        = "このデータは 分納データではありません\rまたは、これ以上 削除できません";
    const struct
    {
        const char *others; ///< UPDATE of the sub-line's other line
        int button;
        std::vector<QString> texts;
        bool isDeleted;
    } cases[] = {{"ShpSts = 1", BoxButton::Yes, {question}, true},
                 {"ShpSts = 1", BoxButton::No, {question}, false},
                 {"ShpSts = 3", BoxButton::Yes, {question, lastLine}, false},
                 {"DpoFlg = 1", BoxButton::Yes, {question, lastLine}, false},
                 {"AccSubNo = 2", BoxButton::Yes, {question, lastLine}, false}};
    AddOrder(1);
    for (const auto &[others, button, texts, isDeleted] : cases) {
        SCOPED_TRACE(others);
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1, others);
        AddLine(1, 1, 2, "IndVal = 0");
        Load();
        const int row = list.Row(1).ShpSubNo() == 2 ? 1 : list.RowCount();
        const int rows = list.RowCount();
        boxes.Press(button);
        EXPECT_EQ(DeleteLine(state.db, list, row), isDeleted);
        EXPECT_EQ(boxes.TakeTexts(), texts);
        EXPECT_EQ(list.RowCount(), rows - isDeleted);
        EXPECT_EQ(Stored("COUNT(*)"), isDeleted ? "1" : "2");
        EXPECT_EQ(Stored("COUNT(*)", "ShpSubNo = 1"), "1");
    }
}

TEST_F(LineSplitTest, AnUnstoredCopyLeavesTheDatabaseAlone)
{
    AddOrder(1);
    AddLine(1, 1, 1, "AnsVal = 30");
    Load();
    CopyLine(list, 1);
    boxes.Press(BoxButton::Yes);
    EXPECT_TRUE(DeleteLine(state.db, list, 2));
    EXPECT_EQ(Stored("ShpSubNo, AnsVal"), "1|30.0");
    EXPECT_EQ(list.RowCount(), 1);
    EXPECT_EQ(list.ActiveRow(), 1) << "the active row stays in range";
    EXPECT_EQ(list.RowsOfOrder(1), std::vector<int>{1});
}

TEST_F(LineSplitTest, ADatabaseErrorKeepsTheRow)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2, "IndVal = 0");
    Load();
    boxes.Press(BoxButton::Yes);
    LockDatabase();
    EXPECT_FALSE(DeleteLine(state.db, list, 2));
    UnlockDatabase();
    EXPECT_EQ(boxes.Shown().back().title, "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ");
    EXPECT_EQ(boxes.Shown().size(), 2u);
    EXPECT_EQ(list.RowCount(), 2);
}
