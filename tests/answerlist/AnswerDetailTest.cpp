#include "ListFixture.h"

#include "answerlist/AnswerDetail.h"

namespace {

class AnswerDetailTest : public ListFixture
{
protected:
    AnswerDetailTest()
    {
        AddOrder(1);
        AddLine(1, 2, 3);
    }
};

} // namespace

TEST_F(AnswerDetailTest, TheStatement)
{
    EXPECT_EQ(BuildDetailSql({4, 5, 6}),
              "SELECT  TLSP0010.CustCD  ,TLSP0010.CustSecCD  ,TLSP0010.CustSecName "
              " ,TLSP0010.AccHinCD  ,TLSP0010.HinCD  ,TLSP0010.OdrNo  ,TLSP0010.MfactNo "
              " ,TLSP0010.PayNo  ,TLSP0010.AccVal  ,TLSP0010.IndVal  ,TLSP0010.AnsVal "
              " ,TLSP0010.LimDate  ,TLSP0010.AnsLimDate  ,TLSP0010.Biko  ,TLSP0010.ContractKBN "
              " ,TLSP0010.ShpSts  ,TLEI0010.KobaiTanto  ,TLEI0011.F055  ,TLEI0011.F082 "
              " ,TLAC0010.AccTan  ,TLAC0010.TanKBN  ,TLAC0010.Unit  ,TLAC0010.F019 "
              " ,TLAC0010.ZanVal  ,TLAC0010.AccHinName  ,TLMT0020.ReadTime  ,TLMT0040.CustName "
              " ,TLMT0040.CustKBN "
              " From (((((TLSP0010 Left    Join TLEI0011 On      TLSP0010.AccNo = TLEI0011.AccNo)"
              " Left    Join TLEI0010 On      TLSP0010.AccNo = TLEI0010.AccNo)"
              " Inner    Join TLAC0010 On      TLSP0010.AccNo = TLAC0010.AccNo)"
              " Inner   Join TLMT0020 On      TLSP0010.AccHinCD = TLMT0020.AccHinCD)"
              " Inner   Join TLMT0040 On      TLAC0010.CustCD = TLMT0040.CustCD)"
              " Where TLSP0010.AccNo    = 4 And   TLSP0010.AccSubNo = 5"
              " And   TLSP0010.ShpSubNo = 6");
}

TEST_F(AnswerDetailTest, WhatIsSaved)
{
    const DetailEntry answered{"20260601", 25, ""};
    const struct
    {
        const char *line;
        DetailEntry entry;
        const char *stored; ///< answered, ship and arrival date, quantity, mark, state
    } cases[] = {
        {"ShpDate = '1', ArvExpDate = '2'", answered, "20260601|20260529|20260601|25.0||1"},
        {"PayDstCD = 'D9'", answered, "20260601|20260601|20260601|25.0||1"},
        {"ShpSts = 3, ShpDate = '1', ArvExpDate = '2'", answered, "20260601|1|2|25.0||3"},
        {"ShpDate = '1', ArvExpDate = '2', AnsLimDate = '20260601'", {}, "|1|2|0.0||1"},
        {"AnsMark = '2'",
         {"20260520", Decimal::FromText(u"0.125"), ""},
         "20260520|20260517|20260520|0.125|2|1"},
    };
    for (const auto &[line, entry, stored] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 2, 3, line);
        AddLine(1, 2, 4);
        const QString other = Stored("*", "ShpSubNo = 4");
        EXPECT_TRUE(SaveDetail(state.db, {1, 2, 3}, entry)) << line;
        EXPECT_EQ(
            Stored("AnsLimDate, ShpDate, ArvExpDate, AnsVal, AnsMark, ShpSts", "ShpSubNo = 3"),
            stored)
            << line;
        EXPECT_EQ(Stored("UpdPGName, UpdDate, UpdTime", "ShpSubNo = 3"),
                  "TL030101|20260501|090807");
        EXPECT_EQ(Stored("*", "ShpSubNo = 4"), other);
    }
}

TEST_F(AnswerDetailTest, TheUpdateStatement)
{
    const DetailEntry entry{"20260601", Decimal::FromText(u"2.5"), "it's  "};
    LineAnswer dates;
    dates.shipDate = "20260529";
    dates.arrivalDate = "20260601";
    const QString head = "UPDATE TLSP0010 SET Biko = 'it''s',AnsLimDate = '20260601',"
                         "AnsVal = '2.5',";
    const QString tail = "UpdPGName = 'TL030101',UpdDate = '20260501',UpdTime = '090807' WHERE "
                         "ACCNO = 1 AND AccSubNo = 2 AND ShpSubNo = 3 AND DPOFLG = 0;";
    const WriteStamp stamp{"20260501", "090807"};
    EXPECT_EQ(BuildDetailUpdateSql({1, 2, 3}, entry, dates, stamp),
              head + "ShpDate = '20260529',ArvExpDate = '20260601'," + tail);
    EXPECT_EQ(BuildDetailUpdateSql({1, 2, 3}, entry, std::nullopt, stamp), head + tail);
}

TEST_F(AnswerDetailTest, WhatCannotBeSaved)
{
    const DetailEntry entry{"20260601", 25, "new"};
    const QString before = Stored("*");
    LockDatabase();
    EXPECT_FALSE(SaveDetail(state.db, {1, 2, 3}, entry));
    UnlockDatabase();
    ASSERT_EQ(boxes.Shown().size(), 2u);
    EXPECT_EQ(boxes.Shown()[0].title, "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ");
    EXPECT_EQ(boxes.TakeTexts()[1], "登録されませんでした\r");
    EXPECT_EQ(Stored("*"), before);

    file.Run("UPDATE TLSP0010 SET DpoFlg = 1");
    EXPECT_FALSE(SaveDetail(state.db, {1, 2, 3}, entry));
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"データが存在しません\r"});
    EXPECT_EQ(Stored("AnsLimDate"), "");
}

TEST_F(AnswerDetailTest, AFailedSaveIsToldWhenTheFileIsFreeAgain)
{
    file.Run("CREATE TRIGGER Kept BEFORE UPDATE ON TLSP0010"
             " BEGIN SELECT RAISE(ABORT, '変更できません'); END");
    QStringList shown;
    SetMsgBoxHandler([&](const MessageBoxRequest &box) {
        shown += box.text.section("\r", 0, 0);
        file.Run("BEGIN IMMEDIATE; ROLLBACK");
        return BoxButton::Ok;
    });
    EXPECT_FALSE(SaveDetail(state.db, {1, 2, 3}, {"20260601", 25, "new"}));
    EXPECT_EQ(shown, QStringList({"ｴﾗｰｺｰﾄﾞ：3317", "登録されませんでした"}));
}

TEST_F(AnswerDetailTest, ASavedAnswerLeavesItsRowUnchanged)
{
    Load();
    list.SetAnswerDate(1, "26/06/05");
    DetailLine saved{1, 2, 3, "20260601", Decimal::FromText(u"1234.5"), false};
    ShowSavedDetail(list, 1, saved);
    using enum ListColumn;
    EXPECT_EQ(Cells(1, {AnswerQuantity, AnswerDate, LoadedDate, LoadedQuantity}),
              "1,234.500|26/06/01|20260601|1,234.500");
    EXPECT_FALSE(list.Row(1).IsChanged());
    saved.answeredDate.clear();
    ShowSavedDetail(list, 1, saved);
    EXPECT_EQ(Cells(1, {AnswerDate, LoadedDate}), "|");
    EXPECT_FALSE(list.Row(1).IsChanged());
}
