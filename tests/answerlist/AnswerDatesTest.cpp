#include "ListFixture.h"

#include "answerlist/AnswerDates.h"

namespace {

using enum ListColumn;

constexpr auto BadDate = "日付の入力が間違っています\r";
constexpr auto BadNumber = "数値の入力が間違っています\r";

/// Row 1 open and unanswered, 2 shipped, 3 open and answered, 4 open without a specified date.
class AnswerDatesTest : public ListFixture
{
protected:
    AnswerDatesTest()
    {
        AddOrder(1);
        AddLine(1, 1, 1);
        AddLine(1, 1, 2, "ShpSts = 3, AnsLimDate = '20260512', AnsMark = '2'");
        AddLine(1, 1, 3, "AnsLimDate = '20260513', AnsMark = '2'");
        AddLine(1, 2, 4, "LimDate = ''");
        file.Run("UPDATE TLSP0010 SET MfactNo = ShpSubNo"); // lists them in this order
        Load();
    }

    /// The row's answered date with its mark.
    QString Date(int row) const { return Cell(row, AnswerDate) + Cell(row, Marks).right(1); }
};

} // namespace

TEST_F(AnswerDatesTest, OnlySelectedOpenRowsChange)
{
    const struct
    {
        std::vector<int> rows;
        bool isSpecified;
        QString dates;
    } cases[] = {{{1}, false, "26/06/01*|26/05/12*|26/05/13*| "},
                 {{2, 3}, false, " |26/05/12*|26/06/01*| "},
                 {{1, 2, 3, 4}, false, "26/06/01*|26/05/12*|26/06/01*|26/06/01*"},
                 {{1, 2, 3, 4}, true, "26/05/20 |26/05/12*|26/05/20 | "}};
    for (const auto &[rows, isSpecified, dates] : cases) {
        Load();
        grid.clearSelection();
        for (const int row : rows)
            grid.selectionModel()->select(grid.model()->index(row - 1, 3),
                                          QItemSelectionModel::Select);
        EXPECT_TRUE(CheckDateSelection(list)) << dates.toStdString();
        if (isSpecified)
            SetSpecifiedDates(list);
        else
            SetAnswerDates(list, "20260601");
        EXPECT_EQ(QStringList({Date(1), Date(2), Date(3), Date(4)}).join('|'), dates);
    }
    EXPECT_EQ(Stored("AnsLimDate", "ShpSubNo = 1"), "") << "the list alone changes";
}

TEST_F(AnswerDatesTest, TheDateAskedFor)
{
    const std::pair<const char *, const char *> answers[]
        = {{"970528", "19970528"}, {"500101", "20500101"}, {"000229", "20000229"}, {"", ""}};
    for (const auto &[typed, stored] : answers) {
        boxes.Type(typed);
        EXPECT_EQ(AskAnswerDate(), stored) << typed;
    }
    EXPECT_TRUE(boxes.Shown().empty());
    for (const char *typed : {"010229", "97/05/28", "97052", "19970528", " ", "abcdef"}) {
        boxes.Type(typed);
        EXPECT_EQ(AskAnswerDate(), "") << typed;
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{BadDate}) << typed;
    }
    EXPECT_EQ(boxes.Prompts()[0].title, "納期設定");
    EXPECT_EQ(boxes.Prompts()[0].text, "回答納期を入力してください\r"
                                       "例 ：1997年5月28日の場合 970528 と6桁の数字で入力する");
}

TEST_F(AnswerDatesTest, TypedTextsAreCheckedAndShown)
{
    const struct
    {
        ListColumn column;
        const char *typed, *shown;
    } taken[] = {{AnswerDate, "260502", "26/05/02"},
                 {AnswerDate, "280229", "28/02/29"},
                 {AnswerQuantity, "123456789.125", "123,456,789.125"},
                 {AnswerQuantity, "0.5", "0.500"}};
    for (const auto &[column, typed, shown] : taken) {
        EXPECT_TRUE(TypeInto(3, column, typed)) << typed;
        EXPECT_EQ(Cell(3, column), shown);
    }
    EXPECT_TRUE(boxes.Shown().empty());
    const struct
    {
        ListColumn column;
        const char *typed, *message;
    } refused[] = {{AnswerDate, "260229", BadDate},   {AnswerDate, "26052", BadDate},
                   {AnswerQuantity, "-5", BadNumber}, {AnswerQuantity, "5.", BadNumber},
                   {AnswerQuantity, ".5", BadNumber}, {AnswerQuantity, "1234567890", BadNumber}};
    const QString before = WholeRow(3);
    for (const auto &[column, typed, message] : refused) {
        EXPECT_FALSE(TypeInto(3, column, typed)) << typed;
        EXPECT_TRUE(grid.IsEditing()) << typed;
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{message}) << typed;
        grid.CancelEdit();
        EXPECT_EQ(WholeRow(3), before) << typed;
    }
}
