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

    /// Over a line that is known without an answer.
    bool Save(const DetailEntry &entry) { return SaveDetail(state.db, {1, 2, 3}, entry, {}); }
};

} // namespace

TEST_F(AnswerDetailTest, WhatIsSaved)
{
    const struct
    {
        const char *line;
        const char *date;   ///< answered; an empty one comes without a quantity
        const char *stored; ///< answered, ship and arrival date, quantity, mark, state
    } cases[] = {
        {"ShpDate = '1', ArvExpDate = '2'", "20260601", "20260601|20260529|20260601|25.5|2|1"},
        {"PayDstCD = 'D9', AnsMark = '1'", "20260601", "20260601|20260601|20260601|25.5|2|1"},
        {"ShpSts = 3, ShpDate = '1', ArvExpDate = '2'", "20260601", "20260601|1|2|25.5|2|3"},
        {"ShpDate = '1', ArvExpDate = '2'", "", "|1|2|0.0|2|1"},
        {"AnsMark = '2'", "20260520", "20260520|20260517|20260520|25.5|1|1"},
        // The mark compares what is seen.
        {"AnsMark = '2', LimDate = '19260601'", "20260601", "20260601|20260529|20260601|25.5|1|1"},
        {"AnsMark = '2', LimDate = NULL", "", "|||0.0|1|1"},
    };
    for (const auto &[line, date, stored] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 2, 3, line);
        AddLine(1, 2, 4);
        const QString other = Stored("*", "ShpSubNo = 4");
        const Decimal quantity = *date ? Decimal::FromText(u"25.5") : Decimal();
        EXPECT_TRUE(Save({date, quantity, "it's"})) << line;
        EXPECT_EQ(
            Stored("AnsLimDate, ShpDate, ArvExpDate, AnsVal, AnsMark, ShpSts", "ShpSubNo = 3"),
            stored)
            << line;
        EXPECT_EQ(Stored("Biko, UpdPGName, UpdDate, UpdTime", "ShpSubNo = 3"),
                  "it's|TL030101|20260501|090807");
        EXPECT_EQ(Stored("*", "ShpSubNo = 4"), other);
    }
}

TEST_F(AnswerDetailTest, WhatCannotBeSavedIsToldWhenTheFileIsFreeAgain)
{
    constexpr auto Error = "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ";
    QStringList shown;
    boxes.OnBox([&](const MessageBoxRequest &box) {
        shown += box.title == Error ? Error : box.text;
        if (!isLocked) {
            EXPECT_NO_THROW(file.Lock(); file.Unlock());
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
        {"UPDATE TLSP0010 SET DpoFlg = 0", false, {Error, NotRegistered}}, // and a rule
        {"ALTER TABLE TLSP0010 RENAME COLUMN AnsLimUmu TO Gone", false, {Error}},
    };
    for (const auto &[fault, isFileLocked, told] : faults) {
        file.Run(fault);
        if (!isFileLocked && told.size() == 2)
            file.Refuse("UPDATE", "NEW.AnsMark <> OLD.AnsMark");
        const QString before = Stored("*");
        shown.clear();
        if (isFileLocked)
            LockDatabase();
        EXPECT_FALSE(Save({"20260601", 25, "new"})) << fault;
        if (isFileLocked)
            UnlockDatabase();
        // On a server the lock is asked for with the reading.
        const bool isRead = file.IsOnServer() && isFileLocked;
        EXPECT_EQ(shown, isRead ? QStringList{Error} : told) << fault;
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
