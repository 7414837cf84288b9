#include "ListFixture.h"

#include "answerlist/AnswerDates.h"

namespace {

using enum ListColumn;

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
        QObject::connect(&grid, &SpreadGrid::CellChanged, [this](int column, int row) {
            if (ListColumn(column) == AnswerDate)
                UpdateDifferenceMark(list, row);
        });
    }

    QString Dates() const
    {
        QStringList rows;
        for (int row = 1; row <= list.RowCount(); ++row)
            rows += Cell(row, AnswerDate) + Cell(row, Marks).right(1);
        return rows.join('|');
    }
};

} // namespace

TEST_F(AnswerDatesTest, ThreePathsLeadToOneResult)
{
    const struct
    {
        const char *stored;
        const char *shown; ///< with the mark
    } cases[] = {{"20260520", "26/05/20 "}, {"20260521", "26/05/21*"}, {"19991231", "99/12/31*"}};
    for (const auto &[stored, shown] : cases) {
        TypeInto(1, AnswerDate, QString(stored).mid(2));
        EXPECT_EQ(Dates().section('|', 0, 0), shown);
        TypeInto(1, AnswerDate, "");
        EXPECT_EQ(Dates().section('|', 0, 0), "*");
        Select({1});
        SetAnswerDates(list, stored);
        EXPECT_EQ(Dates().section('|', 0, 0), shown);
        Change("TLSP0010", "ShpSubNo = 1", QString("LimDate = '%1'").arg(stored));
        Load();
        Select({1});
        SetSpecifiedDates(list);
        EXPECT_EQ(Dates().section('|', 0, 0), QString(shown).left(8) + ' ');
        Change("TLSP0010", "ShpSubNo = 1", "LimDate = '20260520'");
        Load();
    }
    EXPECT_EQ(Stored("AnsLimDate", "ShpSubNo = 1"), "") << "the list alone changes";
}

TEST_F(AnswerDatesTest, OnlySelectedOpenRowsChange)
{
    const struct
    {
        const char *what;
        std::vector<int> rows;
        bool isSpecified;
        const char *dates;
    } cases[] = {
        {"one", {1}, false, "26/06/01*|26/05/12*|26/05/13*| "},
        {"shipped and open", {2, 3}, false, " |26/05/12*|26/06/01*| "},
        {"all, no date specified for one",
         {1, 2, 3, 4},
         false,
         "26/06/01*|26/05/12*|26/06/01*|26/06/01*"},
        {"their own", {1, 2, 3, 4}, true, "26/05/20 |26/05/12*|26/05/20 | "},
    };
    for (const auto &[what, rows, isSpecified, dates] : cases) {
        Load();
        grid.clearSelection();
        for (const int row : rows)
            grid.selectionModel()->select(grid.model()->index(row - 1, 3),
                                          QItemSelectionModel::Select);
        ASSERT_TRUE(CheckDateSelection(list)) << what;
        if (isSpecified)
            SetSpecifiedDates(list);
        else
            SetAnswerDates(list, "20260601");
        EXPECT_EQ(Dates(), dates) << what;
    }
}

TEST_F(AnswerDatesTest, ASelectionWithoutAnOpenRowIsRefused)
{
    EXPECT_FALSE(CheckDateSelection(list));
    Select({2});
    EXPECT_FALSE(CheckDateSelection(list));
    Select({2, 4});
    EXPECT_TRUE(CheckDateSelection(list));
    ASSERT_EQ(boxes.Shown().size(), 2u);
    EXPECT_EQ(boxes.Shown()[0].text, "納期を設定したい行を選択してください\r");
    EXPECT_EQ(boxes.Shown()[0].title, "情報");
    EXPECT_EQ(boxes.Shown()[1].text,
              "出荷済のものしか、選択されていません\rこのデータの変更は出来ません");
    EXPECT_EQ(boxes.Shown()[1].title, "注意");
}

TEST_F(AnswerDatesTest, TheDateAskedFor)
{
    const struct
    {
        const char *typed;
        const char *stored;
        bool isRefused;
    } cases[] = {
        {"970528", "19970528", false},
        {"500101", "20500101", false},
        {"000229", "20000229", false},
        {"", "", false},
        {"010229", "", true},
        {"97/05/28", "", true},
        {"97052", "", true},
        {"19970528", "", true},
        {" ", "", true},
        {"abcdef", "", true},
    };
    for (const auto &[typed, stored, isRefused] : cases) {
        boxes.Type(typed);
        EXPECT_EQ(AskAnswerDate(), stored) << typed;
        EXPECT_EQ(boxes.TakeTexts(), isRefused
                                         ? std::vector<QString>{"日付の入力が間違っています\r"}
                                         : std::vector<QString>())
            << typed;
    }
    EXPECT_EQ(boxes.Prompts()[0].title, "納期設定");
    EXPECT_EQ(boxes.Prompts()[0].text, "回答納期を入力してください\r"
                                       "例 ：1997年5月28日の場合 970528 と6桁の数字で入力する");
}

TEST_F(AnswerDatesTest, TheHintOfARow)
{
    EXPECT_EQ(RowHint(list, 1), "");
    EXPECT_EQ(RowHint(list, 2), "出荷済のものの変更、納期回答作成は出来ません");
    list.SetCell(2, Error, "回答数量が、0です");
    list.SetCell(3, Error, "  ");
    EXPECT_EQ(RowHint(list, 2), "回答数量が、0です") << "an error goes first";
    EXPECT_EQ(RowHint(list, 3), "");
}

TEST_F(AnswerDatesTest, TypedTextsAreCheckedAndShown)
{
    const struct
    {
        ListColumn column;
        const char *typed;
        const char *shown; ///< empty: refused
        const char *message;
    } cases[] = {
        {AnswerDate, "260229", "", "日付の入力が間違っています\r"},
        {AnswerDate, "2605", "", "日付の入力が間違っています\r"},
        {AnswerDate, "26052", "26/05/02", ""},
        {AnswerDate, "280229", "28/02/29", ""},
        {AnswerQuantity, "-5", "", "数値の入力が間違っています\r"},
        {AnswerQuantity, "5.", "", "数値の入力が間違っています\r"},
        {AnswerQuantity, ".5", "", "数値の入力が間違っています\r"},
        {AnswerQuantity, "1234567890", "", "数値の入力が間違っています\r"},
        {AnswerQuantity, "123456789.125", "123,456,789.125", ""},
        {AnswerQuantity, "0.5", "0.500", ""},
    };
    for (const auto &[column, typed, shown, message] : cases) {
        Load();
        const QString before = WholeRow(3);
        grid.setCurrentIndex(grid.model()->index(2, int(column) - 1));
        static_cast<QAbstractItemView &>(grid).edit(grid.currentIndex());
        grid.findChild<QLineEdit *>("cellEditor")->setText(typed);
        const bool isAccepted = *shown != 0;
        EXPECT_EQ(grid.FinishEdit(), isAccepted) << typed;
        EXPECT_EQ(grid.IsEditing(), !isAccepted) << typed;
        const auto texts = boxes.TakeTexts();
        EXPECT_EQ(texts.size(), isAccepted ? 0u : 1u) << typed;
        if (isAccepted) {
            EXPECT_EQ(Cell(3, column), shown);
            continue;
        }
        EXPECT_EQ(texts.front(), message) << typed;
        grid.CancelEdit();
        EXPECT_EQ(WholeRow(3), before) << typed;
    }
}
