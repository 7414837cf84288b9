#include "answerlist/AnswerDetail.h"

#include "lines/LinesFixture.h"

namespace {

using Told = std::vector<QString>;

constexpr auto NoData = "データが存在しません\r";
constexpr auto NotRegistered = "登録されませんでした\r";
constexpr auto MayOverwrite = "ほかの人がこの明細を変更しています。上書きしますか";

class AnswerDetailTest : public LinesFixture
{
protected:
    AnswerDetailTest()
    {
        AddOrder(1);
        AddLine(1, 2, 3);
    }

    bool Save(const DetailEntry &entry, const StoredDetail &known = {})
    {
        return SaveDetail(state.db, {1, 2, 3}, entry, known);
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
        StoredDetail known = {};
    } cases[] = {
        {"ShpDate = '1', ArvExpDate = '2'", answered, "20260601|20260529|20260601|25.0|2|1"},
        {"PayDstCD = 'D9'", answered, "20260601|20260601|20260601|25.0|2|1"},
        {"ShpSts = 3, ShpDate = '1', ArvExpDate = '2'", answered, "20260601|1|2|25.0|2|3"},
        {"ShpDate = '1', ArvExpDate = '2', AnsLimDate = '20260601'",
         {},
         "|1|2|0.0|2|1",
         {"20260601", 0, "", false}},
        {"AnsMark = '2', AnsVal = 1, AnsLimUmu = 3",
         {"20260520", Decimal::FromText(u"0.125"), ""},
         "20260520|20260517|20260520|0.125|1|1",
         {"", 1, "", true}},
        // The mark compares what is seen.
        {"AnsMark = '2', LimDate = '19260601'", answered, "20260601|20260529|20260601|25.0|1|1"},
        {"AnsMark = '2', LimDate = NULL", {}, "|||0.0|1|1"},
    };
    for (const auto &[line, entry, stored, known] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 2, 3, line);
        AddLine(1, 2, 4);
        const QString other = Stored("*", "ShpSubNo = 4");
        EXPECT_TRUE(Save(entry, known)) << line;
        EXPECT_EQ(
            Stored("AnsLimDate, ShpDate, ArvExpDate, AnsVal, AnsMark, ShpSts", "ShpSubNo = 3"),
            stored)
            << line;
        EXPECT_EQ(Stored("UpdPGName, UpdDate, UpdTime", "ShpSubNo = 3"),
                  "TL030101|20260501|090807");
        EXPECT_EQ(Stored("*", "ShpSubNo = 4"), other);
    }
}

TEST_F(AnswerDetailTest, TheUpdateStatements)
{
    const DetailEntry entry{"20260601", Decimal::FromText(u"2.5"), "it's  "};
    WrittenAnswer dates;
    dates.shipDate = "20260529";
    dates.arrivalDate = "20260601";
    const QString head = "UPDATE TLSP0010 SET Biko = 'it''s',AnsLimDate = '20260601',"
                         "AnsVal = '2.5',";
    const QString where = "WHERE ACCNO = 1 AND AccSubNo = 2 AND ShpSubNo = 3 AND DPOFLG = 0;";
    const QString tail = "UpdPGName = 'TL030101',UpdDate = '20260501',UpdTime = '090807' " + where;
    const WriteStamp stamp{"20260501", "090807"};
    EXPECT_EQ(BuildDetailUpdateSql({1, 2, 3}, entry, dates, stamp),
              head + "ShpDate = '20260529',ArvExpDate = '20260601'," + tail);
    EXPECT_EQ(BuildDetailUpdateSql({1, 2, 3}, entry, std::nullopt, stamp), head + tail);
    EXPECT_EQ(BuildDetailMarkSql({1, 2, 3}, true), "UPDATE TLSP0010 SET AnsMark = '1' " + where);
}

TEST_F(AnswerDetailTest, WhatCannotBeSavedIsToldWhenTheFileIsFreeAgain)
{
    constexpr auto Error = "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ";
    QStringList shown;
    boxes.OnBox([&](const MessageBoxRequest &box) {
        shown += box.title == Error ? Error : box.text;
        if (!isLocked) {
            EXPECT_NO_THROW(file.Run("BEGIN IMMEDIATE; ROLLBACK"));
        }
    });
    const struct
    {
        const char *fault;
        bool isLocked;
        QStringList told;
    } faults[] = {
        {"UPDATE TLSP0010 SET DpoFlg = 0", true, {Error, NotRegistered}},
        {"UPDATE TLSP0010 SET DpoFlg = 1", true, {Error, NotRegistered}}, // read under the lock
        {"UPDATE TLSP0010 SET DpoFlg = 1", false, {NoData}},
        {"UPDATE TLSP0010 SET DpoFlg = 0; CREATE TRIGGER Kept BEFORE UPDATE ON TLSP0010"
         " WHEN NEW.AnsMark <> OLD.AnsMark BEGIN SELECT RAISE(ABORT, '変更できません'); END",
         false,
         {Error, NotRegistered}},
        {"ALTER TABLE TLMT0050 RENAME TO Gone", false, {Error}},
        {"ALTER TABLE TLSP0010 RENAME COLUMN AnsLimUmu TO Gone", false, {Error}},
    };
    for (const auto &[fault, isFileLocked, told] : faults) {
        file.Run(fault);
        const QString before = Stored("*");
        shown.clear();
        if (isFileLocked)
            LockDatabase();
        EXPECT_FALSE(Save({"20260601", 25, "new"})) << fault;
        if (isFileLocked)
            UnlockDatabase();
        EXPECT_EQ(shown, told) << fault;
        EXPECT_EQ(Stored("*"), before) << fault;
    }
}

TEST_F(AnswerDetailTest, EachChangeOfAnotherIsAskedAboutOnce)
{
    file.Run("UPDATE TLSP0010 SET AnsVal = 1");
    boxes.OnBox([&](const MessageBoxRequest &) {
        if (boxes.Shown().size() == 1)
            file.Run("UPDATE TLSP0010 SET AnsVal = 2");
    });
    boxes.Press(BoxButton::Yes);
    boxes.Press(BoxButton::Yes);
    EXPECT_TRUE(Save({"20260601", 25, "new"}));
    EXPECT_EQ(boxes.TakeTexts(), (Told{MayOverwrite, MayOverwrite}));
    EXPECT_EQ(Stored("AnsLimDate, AnsVal, Biko"), "20260601|25.0|new");
}
