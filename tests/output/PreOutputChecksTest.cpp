#include "output/PreOutputChecks.h"

#include "output/AnswerRun.h"

namespace {

class PreOutputChecksTest : public AnswerRun
{
protected:
    bool Check()
    {
        status.clear();
        return RunPreOutputChecks(
            list, [this](const QString &text) { status += text; }, participants);
    }

    QString ErrorOf(int row) const { return list.Row(row).Cell(ListColumn::Error); }

    int participants = -1;
};

} // namespace

TEST_F(PreOutputChecksTest, NothingToAnswer)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    AddLine(1, 1);
    AddLine(1, 2, "ShpSts = 3");
    Load();
    Select({2});
    EXPECT_FALSE(Check());
    EXPECT_EQ(participants, 0);
    EXPECT_EQ(boxes.TakeTexts(),
              std::vector<QString>{"有効な行を選択してください\r"
                                   "※ 出荷済のものは、納期回答作成対象にはなりません"});

    Select({1, 2});
    EXPECT_TRUE(Check());
    EXPECT_EQ(participants, 1);
}

TEST_F(PreOutputChecksTest, TheFirstRowInErrorBecomesTheActiveOne)
{
    AddCustomer("C1");
    AddCustomer("C2", "LinKBN = 2");
    AddOrder(1, "C1", 30);
    AddLine(1, 1);
    AddLine(1, 2);
    AddLine(1, 3);
    AddOrder(2, "C2", 10);
    AddLine(2, 1);
    AddOrder(3, "C1", 10);
    AddLine(3, 1);
    const struct
    {
        const char *what;
        std::vector<std::pair<int, const char *>> quantities; ///< row, as typed
        std::vector<std::pair<int, const char *>> dates;
        int row;
        const char *error;
    } cases[] = {
        {"all well", {}, {}, 0, ""},
        {"emptied quantity", {{2, ""}}, {}, 2, "回答数量が、0です"},
        {"quantity before date", {{4, "0"}}, {{4, ""}}, 4, "回答数量が、0です"},
        {"rule 1 asks for no date", {}, {{1, ""}, {5, ""}}, 0, ""},
        {"rule 2 does", {}, {{4, " "}}, 4, "回答納期が入力されていません"},
        {"lines before sums", {{1, "99.000"}}, {{4, ""}}, 4, "回答納期が入力されていません"},
        {"one too many", {{5, "10.001"}}, {}, 5, "回答数量合計が、注残数を超えています"},
        {"each below, together above",
         {{2, "10.001"}},
         {},
         1,
         "回答数量合計が、注残数を超えています"},
        {"up to the third decimal",
         {{5, "10.0005"}},
         {},
         5,
         "回答数量合計が、注残数を超えています"},
    };
    Load();
    for (const auto &[what, quantities, dates, row, error] : cases) {
        SCOPED_TRACE(what);
        Reload();
        SelectAll();
        list.Activate(3);
        for (const auto &[changed, quantity] : quantities)
            list.SetCell(changed, ListColumn::AnswerQuantity, quantity);
        for (const auto &[changed, date] : dates)
            list.SetCell(changed, ListColumn::AnswerDate, date);
        EXPECT_EQ(Check(), row == 0);
        EXPECT_EQ(participants, 5);
        EXPECT_EQ(list.ActiveRow(), row == 0 ? 3 : row);
        for (int other = 1; other <= 5; ++other)
            EXPECT_EQ(ErrorOf(other), other == row ? error : "") << other;
    }
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(PreOutputChecksTest, OnlyRowsThatTakePartCount)
{
    AddCustomer("C1");
    AddOrder(1, "C1", 15);
    AddLine(1, 1);
    AddLine(1, 2);
    AddLine(1, 3, "ShpSts = 3");
    Load();
    Select({1});
    EXPECT_TRUE(Check()) << "the other line was answered before, with what it still holds";
    EXPECT_EQ(participants, 1);

    list.SetCell(2, ListColumn::AnswerQuantity, "6.000"); // changed, so it takes part unselected
    EXPECT_FALSE(Check());
    EXPECT_EQ(participants, 2);
    EXPECT_EQ(ErrorOf(1), "回答数量合計が、注残数を超えています");

    list.SetCell(2, ListColumn::AnswerQuantity, "5.000");
    EXPECT_TRUE(Check());
    EXPECT_EQ(ErrorOf(1), "") << "gone with the next check of the row";
}

TEST_F(PreOutputChecksTest, AmountsThatCancelEachOther)
{
    AddCustomer("C1");
    AddOrder(1, "C1");
    AddLine(1, 1, "AnsVal = -10");
    AddLine(1, 2);
    Load();
    SelectAll();
    EXPECT_FALSE(Check());
    EXPECT_EQ(ErrorOf(1), "回答数量合計が、0です");
}
