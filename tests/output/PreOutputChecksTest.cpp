#include "output/PreOutputChecks.h"

#include "output/AnswerRun.h"

namespace {

class PreOutputChecksTest : public AnswerRun
{
protected:
    bool Check()
    {
        result = RunPreOutputChecks(list, selected, [](const QString &) {});
        return result.isPassed;
    }

    CheckResult result;
};

} // namespace

TEST_F(PreOutputChecksTest, TheFirstRowInErrorIsNamed)
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
        std::vector<std::pair<int, const char *>> quantities; ///< by row
        std::vector<int> withoutDate;
        int row;
        LineError error;
    } cases[] = {
        {{{2, "0"}}, {}, 2, LineError::NoQuantity},
        {{}, {1, 5}, 0, LineError::None}, // rule 1 asks for no date
        {{}, {4}, 4, LineError::NoDate},
        {{{1, "99"}}, {4}, 4, LineError::NoDate}, // lines before sums
        {{{2, "10.001"}}, {}, 1, LineError::MoreThanOpen},
        {{{5, "10.0005"}}, {}, 5, LineError::MoreThanOpen}, // to the third decimal
        {{{5, "10.0004"}}, {}, 0, LineError::None},
        {{{1, "-10"}, {2, "5"}, {3, "5"}}, {}, 1, LineError::NoSum},
    };
    for (const auto &[quantities, withoutDate, row, error] : cases) {
        SCOPED_TRACE(testing::PrintToString(quantities) + testing::PrintToString(withoutDate));
        Load();
        SelectAll();
        for (const auto &[changed, quantity] : quantities)
            list.At(changed).SetQuantity(Decimal::FromText(QString(quantity)));
        for (const int changed : withoutDate)
            list.At(changed).SetDate({});
        EXPECT_EQ(Check(), row == 0);
        EXPECT_EQ(result.participants, 5);
        EXPECT_EQ(result.failedRow, row);
        for (int other = 1; other <= 5; ++other)
            EXPECT_EQ(list.At(other).Error(), other == row ? error : LineError::None) << other;
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
    Select({3});
    EXPECT_FALSE(Check());
    EXPECT_EQ(boxes.TakeTexts(),
              std::vector<QString>{"有効な行を選択してください\r"
                                   "※ 出荷済のものは、納期回答作成対象にはなりません"});
    Select({1, 3});
    EXPECT_TRUE(Check()) << "the other line was answered before, with what it still holds";
    EXPECT_EQ(result.participants, 1);

    list.At(2).SetQuantity(Decimal(6)); // changed, so it takes part unselected
    EXPECT_FALSE(Check());
    EXPECT_EQ(result.participants, 2);
    EXPECT_EQ(list.At(1).Error(), LineError::MoreThanOpen);

    list.At(2).SetQuantity(Decimal(5));
    EXPECT_TRUE(Check());
    EXPECT_EQ(list.At(1).Error(), LineError::None) << "gone with the next check of the row";
}
