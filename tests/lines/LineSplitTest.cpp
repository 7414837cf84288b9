#include "lines/LinesFixture.h"

#include "lines/LineSplit.h"

namespace {

using LineSplitTest = LinesFixture;

} // namespace

TEST_F(LineSplitTest, ACopyTakesTheOrderAndIsOpen)
{
    AddOrder(1, "EDIKBN = 1");
    AddLine(1, 1, 1, "AnsVal = 30, AnsLimDate = '20260601', AnsMark = '2', AnsLimUmu = 3");
    AddLine(1, 1, 2, "DenKBN = 15, IndVal = 50, ShpVal = 9, ShpSts = 3");
    Load();
    list.At(1).SetError(LineError::MoreThanOpen);
    const QString source = RowText(list.At(1));
    CopyLine(edits, 1);
    EXPECT_EQ(RowText(list.At(1)), source);
    EXPECT_EQ(RowText(list.At(2)), "*/ |PO-1/HIN-1/抵抗器/SUS|100.000/100.000|0.000/0.000|70.000||"
                                   "26/05/20/P1|　/　|A 確定注文１型取引/SEC");
    EXPECT_FALSE(list.At(2).IsDefective());
    EXPECT_EQ(list.At(2).Error(), LineError::None);
    EXPECT_EQ(list.UnregisteredCount(), 1);
    // Of a defective and shipped line, and of copies.
    CopyLine(edits, 3);
    CopyLine(edits, 2);
    EXPECT_TRUE(list.At(5).IsDefective()) << "a copy has the colour of its source";
    EXPECT_FALSE(list.At(5).IsShipped());
    EXPECT_EQ(list.At(3).Source().shpSubNo, 1) << "of the copy's own source";
}

TEST_F(LineSplitTest, WhatIsLeftIsThatOfTheSubLine)
{
    // The answers of two rows of the order's sub-line, instructed 100, and what is left.
    const std::tuple<const char *, const char *, const char *> cases[]
        = {{"30", "0.001", "69.999"},
           {"60", "40", "0.000"},
           {"60", "40.001", "0.000"}, // never less than nothing
           {"0", "1", "0.000"}};      // without an answer all is proposed
    AddOrder(1);
    for (const auto &[first, second, left] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1, QString("AnsVal = ") + first);
        AddLine(1, 1, 2, QString("AnsVal = ") + second);
        AddLine(1, 2, 3, "AnsVal = 50"); // another sub-line
        Load();
        CopyLine(edits, 1);
        EXPECT_EQ(Cell(2, AnswerQuantity), left) << second;
    }
}

TEST_F(LineSplitTest, ASplitIsTakenBackWhenNothingSpeaksAgainstIt)
{
    const QString refused = "削除されませんでした\r";
    const QString answered = refused + "このデータは 納期回答済です";
    const QString asReceived = refused + "このデータは 分納データではありません";
    const QString lastLine
        = "このデータは 分納データではありません\rまたは、これ以上 削除できません";
    enum Answer { Unasked, No, Yes };
    // The line, what others do after the list was loaded, and what is told after the question.
    const std::tuple<const char *, const char *, Answer, QString> cases[] = {
        {"IndVal = 0.001", "", Unasked, asReceived},
        {"IndVal = 0, ShpSts = 3, AnsLimUmu = 3", "", Unasked, refused + "このデータは 出荷済です"},
        {"IndVal = 0, AnsLimUmu = 3", "", Unasked, answered},
        {"IndVal = 0", "", No, ""},
        {"IndVal = 0", "", Yes, ""},
        {"IndVal = 0", "AnsLimUmu = 3 WHERE ShpSubNo = 2", Yes, answered},
        {"IndVal = 0", "ShpSts = 3 WHERE ShpSubNo = 1", Yes, lastLine},
        {"IndVal = 0", "AccSubNo = 2 WHERE ShpSubNo = 1", Yes, lastLine},
    };
    AddOrder(1);
    for (const auto &[line, meanwhile, answer, told] : cases) {
        SCOPED_TRACE(std::string(line) + ' ' + meanwhile);
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1);
        AddLine(1, 1, 2, line);
        Load();
        if (*meanwhile)
            file.Run(QString("UPDATE TLSP0010 SET ") + meanwhile);
        QStringList texts;
        if (answer != Unasked) {
            boxes.Press(answer == Yes ? BoxButton::Yes : BoxButton::No);
            texts += "削除してもよろしいですか\r";
        }
        if (!told.isEmpty())
            texts += told;
        const bool isDeleted = answer == Yes && told.isEmpty();
        EXPECT_EQ(DeleteLine(state.db, list.At(2)), isDeleted);
        EXPECT_EQ(boxes.TakeTexts(), std::vector(texts.begin(), texts.end()));
        EXPECT_EQ(file.Rows("SELECT SUM(ShpSubNo) FROM TLSP0010"), isDeleted ? "1" : "3");
    }
    CopyLine(edits, 1);
    boxes.Press(BoxButton::Yes);
    EXPECT_TRUE(DeleteLine(state.db, list.At(2))) << "one that was not stored yet";
    EXPECT_EQ(file.Rows("SELECT SUM(ShpSubNo) FROM TLSP0010"), "3");
    boxes.TakeTexts();

    file.Refuse("DELETE");
    boxes.Press(BoxButton::Yes);
    EXPECT_FALSE(DeleteLine(state.db, list.At(3)));
    EXPECT_EQ(boxes.Shown().size(), 2u) << "the question and the error";
}
