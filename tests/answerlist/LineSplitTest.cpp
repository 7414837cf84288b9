#include "ListFixture.h"

#include "answerlist/LineSplit.h"
#include "answerlist/Registration.h"

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
        const char *what;
        std::vector<const char *> answers; ///< of the order sub-line's rows, instructed 100
        const char *left;
    } cases[] = {
        {"one row", {"30"}, "70.000"},
        {"all answered", {"60", "40"}, "0.000"},
        {"more than instructed", {"60", "40.001"}, "0.000"},
        {"decimals", {"33.333", "33.333"}, "33.334"},
        {"nothing answered proposes all", {"0"}, "0.000"},
    };
    AddOrder(1);
    AddOrder(2);
    for (const auto &[what, answers, left] : cases) {
        file.Run("DELETE FROM TLSP0010");
        int shpSubNo = 0;
        for (const char *answer : answers)
            AddLine(1, 1, ++shpSubNo, QString("AnsVal = %1").arg(answer));
        AddLine(1, 2, ++shpSubNo, "AnsVal = 50"); // another sub-line of the order
        AddLine(2, 1, 1, "AnsVal = 50");          // another order
        Load();
        CopyLine(list, 1);
        EXPECT_EQ(Cell(2, AnswerQuantity), left) << what;
    }
}

TEST_F(LineSplitTest, CopiesOfCopiesAndOfShippedLines)
{
    AddOrder(1);
    AddLine(1, 1, 1, "AnsVal = 30");
    AddLine(1, 1, 2, "AnsVal = 10, ShpSts = 3");
    Load();
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

TEST_F(LineSplitTest, CopyAndDeleteWorkOnOneRow)
{
    EXPECT_EQ(SingleRow(list), 0) << "an empty list";
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2);
    AddLine(1, 1, 3);
    Load();
    EXPECT_EQ(SingleRow(list), 0) << "nothing selected";
    EXPECT_EQ(boxes.TakeTexts(), (std::vector<QString>{"有効な行を選択してください\r",
                                                       "有効な行を選択してください\r"}));
    Select({2});
    EXPECT_EQ(SingleRow(list), 2);
    Select({1, 3});
    EXPECT_EQ(SingleRow(list), 0);
    EXPECT_FALSE(CheckSingleRow(list));
    EXPECT_EQ(boxes.TakeTexts(),
              (std::vector<QString>{"複数行の指定は出来ません", "複数行の指定は出来ません"}));
    grid.clearSelection();
    EXPECT_TRUE(CheckSingleRow(list)) << "the detail needs no selection";
}

TEST_F(LineSplitTest, WhatMayNotBeDeleted)
{
    const QString notDeleted = "削除されませんでした\r";
    const struct
    {
        const char *line;
        QString text;
    } cases[] = {
        {"IndVal = 0.001", notDeleted + "このデータは 分納データではありません"},
        {"IndVal = 1, ShpSts = 3, AnsLimUmu = 3",
         notDeleted + "このデータは 分納データではありません"},
        {"IndVal = 0, ShpSts = 3, AnsLimUmu = 3", notDeleted + "このデータは 出荷済です"},
        {"IndVal = 0, AnsLimUmu = 3", notDeleted + "このデータは 納期回答済です"},
    };
    AddOrder(1);
    for (const auto &[line, text] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1, line);
        AddLine(1, 1, 2);
        Load();
        EXPECT_FALSE(DeleteLine(state.db, list, 1));
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{text}) << line;
        EXPECT_EQ(list.RowCount(), 2);
        EXPECT_EQ(Stored("ShpSubNo"), "1 2") << line;
    }
}

TEST_F(LineSplitTest, ASplitIsDeletedWhenConfirmed)
{
    const struct
    {
        const char *what;
        int button;
        const char *others; ///< UPDATE of the sub-line's other line
        bool isDeleted;
        std::vector<QString> texts;
    } cases[] = {
        {"confirmed", BoxButton::Yes, "ShpSts = 1", true, {"削除してもよろしいですか\r"}},
        {"not confirmed", BoxButton::No, "ShpSts = 1", false, {"削除してもよろしいですか\r"}},
        {"the last open line",
         BoxButton::Yes,
         "ShpSts = 3",
         false,
         {"削除してもよろしいですか\r",
          "このデータは 分納データではありません\rまたは、これ以上 削除できません"}},
        {"the other line is dead",
         BoxButton::Yes,
         "DpoFlg = 1",
         false,
         {"削除してもよろしいですか\r",
          "このデータは 分納データではありません\rまたは、これ以上 削除できません"}},
        {"the other line is of another sub-line",
         BoxButton::Yes,
         "AccSubNo = 2",
         false,
         {"削除してもよろしいですか\r",
          "このデータは 分納データではありません\rまたは、これ以上 削除できません"}},
    };
    AddOrder(1);
    for (const auto &[what, button, others, isDeleted, texts] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1, others);
        AddLine(1, 1, 2, "IndVal = 0");
        Load();
        const int row = list.Row(1).ShpSubNo() == 2 ? 1 : list.RowCount();
        const int rows = list.RowCount();
        boxes.Press(button);
        EXPECT_EQ(DeleteLine(state.db, list, row), isDeleted) << what;
        EXPECT_EQ(boxes.TakeTexts(), texts) << what;
        EXPECT_EQ(list.RowCount(), rows - isDeleted) << what;
        EXPECT_EQ(Stored("COUNT(*)"), isDeleted ? "1" : "2") << what;
        EXPECT_EQ(Stored("COUNT(*)", "ShpSubNo = 1"), "1") << what;
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

TEST_F(LineSplitTest, CopyRegisterCopyAgainDelete)
{
    AddOrder(1);
    AddLine(1, 1, 1, "AnsVal = 30, AnsLimDate = '20260601'");
    AddLine(1, 2, 5);
    Load();
    const auto registerAll = [&] {
        RegistrationCounts counts;
        EXPECT_TRUE(Registration(state.db, list).RegisterAnswers(counts));
        return counts.added;
    };
    CopyLine(list, 1);
    CopyLine(list, 1);
    list.SetCell(2, AnswerQuantity, "50.000");
    EXPECT_EQ(registerAll(), 2);
    // Numbers go on above the order's highest, from the top down.
    EXPECT_EQ(Cells(2, {ShpSubNo, AnswerQuantity}), "6|50.000");
    EXPECT_EQ(Cells(3, {ShpSubNo, AnswerQuantity}), "7|70.000");
    EXPECT_EQ(registerAll(), 0) << "what is stored is no new line";
    list.SetCell(3, AnswerQuantity, "10.000");
    CopyLine(list, 2);
    EXPECT_EQ(Cell(3, AnswerQuantity), "0.000") << "a split's own instruction is 0";
    CopyLine(list, 1);
    EXPECT_EQ(Cell(2, AnswerQuantity), "10.000");
    EXPECT_EQ(registerAll(), 2);
    EXPECT_EQ(Cells(2, {ShpSubNo}) + Cells(4, {ShpSubNo}), "89");
    boxes.Press(BoxButton::Yes);
    EXPECT_TRUE(DeleteLine(state.db, list, 3));
    EXPECT_EQ(Stored("ShpSubNo, AnsVal", "AccSubNo = 1"), "1|30.0 7|10.0 8|10.0 9|0.0");
    EXPECT_EQ(list.RowsOfOrder(1), (std::vector<int>{1, 2, 3, 4, 5}));
}
