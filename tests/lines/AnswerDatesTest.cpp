#include "lines/LinesFixture.h"

#include "lines/AnswerDates.h"

namespace {

using AnswerDatesTest = LinesFixture;

} // namespace

TEST_F(AnswerDatesTest, OnlySelectedOpenRowsChange)
{
    // Row 1 open and unanswered, 2 shipped, 3 open and answered, 4 without a specified date.
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2, "ShpSts = 3, AnsLimDate = '20260512', AnsMark = '2'");
    AddLine(1, 1, 3, "AnsLimDate = '20260513', AnsMark = '2'");
    AddLine(1, 1, 4, "LimDate = ''");
    const std::tuple<std::vector<int>, bool, QString> cases[]
        = {{{1}, false, "26/06/01*|26/05/12*|26/05/13*| "},
           {{2, 3}, false, " |26/05/12*|26/06/01*| "},
           {{1, 2, 3, 4}, false, "26/06/01*|26/05/12*|26/06/01*|26/06/01*"},
           {{1, 2, 3, 4}, true, "26/05/20 |26/05/12*|26/05/20 | "}};
    for (const auto &[rows, isSpecified, dates] : cases) {
        Load();
        EXPECT_TRUE(CheckDateSelection(list, Rows(rows))) << dates.toStdString();
        if (isSpecified)
            SetSpecifiedDates(list, Rows(rows));
        else
            SetAnswerDates(list, Rows(rows), "20260601");
        QStringList shown;
        for (int row = 1; row <= 4; ++row)
            shown += Cell(row, AnswerDate) + Cell(row, Marks).right(1);
        EXPECT_EQ(shown.join('|'), dates);
    }
    EXPECT_EQ(Stored("AnsLimDate", "ShpSubNo = 1"), "") << "the list alone changes";
}

TEST_F(AnswerDatesTest, TheDateAskedForIsSixDigits)
{
    const std::pair<const char *, const char *> answers[]
        = {{"970528", "19970528"}, {"000229", "20000229"}, {"", ""}};
    for (const auto &[typed, stored] : answers) {
        boxes.Type(typed);
        EXPECT_EQ(AskAnswerDate(), stored) << typed;
    }
    EXPECT_TRUE(boxes.Shown().empty());
    for (const char *typed : {"010229", "97/05/28", "97052", " ", "26 1 8", "２６１２０８"}) {
        boxes.Type(typed);
        EXPECT_EQ(AskAnswerDate(), "") << typed;
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"日付の入力が間違っています\r"}) << typed;
    }
}
