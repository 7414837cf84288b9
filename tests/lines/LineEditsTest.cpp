#include "lines/LinesFixture.h"

#include "lines/AnswerDates.h"
#include "lines/LineSplit.h"
#include "lines/Registration.h"

#include <random>

namespace {

class LineEditsTest : public LinesFixture
{
protected:
    /// Lines of open orders, three each.
    void LoadOrders(int orders)
    {
        for (int order = 1; order <= orders; ++order) {
            AddOrder(order);
            for (int line = 1; line <= 3; ++line)
                AddLine(order, 1, line, line == 3 ? "AnsMark = '2'" : "");
        }
        Load();
    }

    /// All that the operator sees of the list.
    QStringList Shown() const
    {
        QStringList rows;
        for (int row = 1; row <= list.Count(); ++row)
            rows += RowText(list.At(row)) + (list.At(row).IsChanged() ? " changed" : "");
        return rows;
    }

    void EditAnything(std::mt19937 &random)
    {
        const auto row = [&] { return 1 + int(random() % unsigned(list.Count())); };
        const int one = row();
        switch (random() % 6) {
        case 0:
            edits.SetQuantity(one, Decimal(int(random() % 5)));
            break;
        case 1:
            edits.SetDate(one, random() % 2 ? "20260520" : "");
            break;
        case 2:
            SetAnswerDates(edits, Rows({row(), row(), one}), "20260601");
            break;
        case 3:
            CopyLine(edits, one);
            break;
        case 4:
            if (!list.At(one).IsStored())
                edits.Remove(one);
            break;
        default: { // what a file brings: answers, and several splits at once
            const LineEdits::Step step(edits);
            edits.SetQuantity(one, 7);
            const auto rows = edits.InsertSplits({{row(), list.At(one).Split(2)},
                                                  {one, list.At(one).Split(1)},
                                                  {0, list.At(1).Split(3)}});
            edits.SetDate(rows[1], "20260603");
            edits.SetDate(rows[1], "20260604");
        }
        }
    }
};

TEST_F(LineEditsTest, WhateverWasDoneIsTakenBackStepByStep)
{
    LoadOrders(4);
    std::mt19937 random(20261126);
    for (int round = 0; round < 40; ++round) {
        std::vector<QStringList> before;
        for (int step = 0; step < 12; ++step) {
            const QStringList shown = Shown();
            EditAnything(random);
            if (Shown() != shown)
                before.push_back(shown);
        }
        for (; !before.empty(); before.pop_back()) {
            ASSERT_TRUE(edits.TakeBack().isAnything);
            ASSERT_EQ(Shown(), before.back()) << "round " << round;
        }
        EXPECT_FALSE(edits.TakeBack().isAnything);
    }
}

TEST_F(LineEditsTest, WhatIsRegisteredStays)
{
    LoadOrders(2);
    edits.SetDate(5, "20260601"); // of order 2
    edits.SetDate(1, "20260602"); // of order 1, registered below
    CopyLine(edits, 1);
    edits.SetDate(2, "20260603");
    SetAnswerDates(edits, Rows({3, 7}), "20260604"); // of order 1 and of order 2
    RegistrationCounts counts;
    file.Refuse("UPDATE", "NEW.AccNo = 2");
    ASSERT_FALSE(Registration(state.db, list, {}).RegisterAnswers(counts));
    ASSERT_TRUE(list.At(2).IsStored());
    const QStringList registered = Shown();

    LineEdits::TakenBack back = edits.TakeBack();
    EXPECT_EQ(back.rows, std::vector<int>({7})) << "row 3 is registered";
    back = edits.TakeBack();
    EXPECT_EQ(back.rows, std::vector<int>({6})) << "row 5, before the copy came above it";
    EXPECT_EQ(Shown().mid(0, 4), registered.mid(0, 4));
    EXPECT_EQ(list.UnregisteredCount(), 0) << "nor is what could not be registered";
    EXPECT_FALSE(edits.TakeBack().isAnything);
}

TEST_F(LineEditsTest, ASplitComesBackToItsOrder)
{
    LoadOrders(2);
    CopyLine(edits, 5);
    edits.Remove(6);
    list.Remove({5}); // the database has it no more
    edits.TakeBack();
    EXPECT_FALSE(list.At(6).IsStored()) << "below the last line of its order";
    EXPECT_EQ(list.At(6).Key().accNo, 2);
}

TEST_F(LineEditsTest, WhatAStepSelectedLeavesTheSelectionWithIt)
{
    LoadOrders(2);
    edits.SetSelection([] { return Rows({2, 3}); });
    SetAnswerDates(edits, Rows({2, 3}), "20260601");
    edits.SetQuantity(4, 1); // selects its row
    EXPECT_EQ(edits.TakeBack().unselected, std::vector<int>({4}));
    EXPECT_EQ(edits.TakeBack().unselected, std::vector<int>());
    // The same text once more is no step, another mark is one.
    edits.SetQuantity(4, list.At(4).Now().quantity);
    EXPECT_FALSE(edits.TakeBack().isAnything);
    edits.SetDate(1, "");
    EXPECT_EQ(edits.TakeBack().rows, std::vector<int>({1}));
}

} // namespace
