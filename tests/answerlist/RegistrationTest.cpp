#include "ListFixture.h"

#include "answerlist/AnswerDates.h"
#include "answerlist/LineSplit.h"
#include "answerlist/Registration.h"
#include "support/BuildSpeed.h"

#include <QElapsedTimer>

namespace {

using enum ListColumn;

class RegistrationTest : public ListFixture
{
protected:
    bool Register()
    {
        counts = {};
        return Registration(state.db, list).RegisterAnswers(counts);
    }

    QString Counts() const { return QString("%1 %2").arg(counts.added).arg(counts.changed); }

    RegistrationCounts counts;
};

} // namespace

TEST_F(RegistrationTest, WhichRowsAreWritten)
{
    // One line, its open quantity 100, instructed 100.
    constexpr auto answered = "AnsVal = 5, AnsLimDate = '20260601'";
    const struct
    {
        const char *what, *line;
        ListColumn column; ///< changed
        const char *text;
        bool isSelected;
        RowKind kind;
    } cases[] = {
        {"unanswered", "", Skipped, "", false, RowKind::NotWritten},
        {"answered", answered, Skipped, "", false, RowKind::NotWritten},
        {"selected", answered, Skipped, "", true, RowKind::Selected},
        {"instructed is not open", "IndVal = 99", Skipped, "", false, RowKind::Changed},
        {"quantity", answered, AnswerQuantity, "6.000", true, RowKind::Changed},
        {"date", answered, AnswerDate, "26/06/02", true, RowKind::Changed},
        {"not stored", answered, ShpSubNo, "", true, RowKind::NewLine},
        {"shipped", "ShpSts = 3", AnswerQuantity, "6.000", true, RowKind::NotWritten},
    };
    AddOrder(1);
    for (const auto &[what, line, column, text, isSelected, kind] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1, line);
        Load();
        list.SetCell(1, column, text);
        grid.clearSelection();
        if (isSelected)
            Select({1});
        EXPECT_EQ(DecideRow(list, 1), kind) << what;
    }
}

TEST_F(RegistrationTest, DatesAndMarkOfAnAnswer)
{
    const struct
    {
        const char *what, *date; ///< typed
        const char *line;
        const char *written; ///< answered, ship, arrival, mark
    } cases[] = {
        {"over the month's end", "260602", "", "20260602|20260530|20260602|2"},
        {"the specified date", "260520", "", "20260520|20260517|20260520|1"},
        {"no destination", "260602", "PayDstCD = 'D2'", "20260602|20260602|20260602|2"},
        {"no date keeps what is stored", "",
         "AnsLimDate = '20260601', ShpDate = '20260401', ArvExpDate = '20260404'",
         "|20260401|20260404|2"},
        {"no date, and none asked for", "", "AnsLimDate = '20260601', LimDate = ''", "|||1"},
        {"shipped meanwhile", "260602", "ShpDate = '20260401', ArvExpDate = '20260404'",
         "20260602|20260401|20260404|2"},
    };
    AddOrder(1);
    for (const auto &[what, date, line, written] : cases) {
        file.Run("DELETE FROM TLSP0010");
        AddLine(1, 1, 1, line);
        Load();
        TypeInto(1, AnswerDate, date);
        if (QString(what) == "shipped meanwhile")
            file.Run("UPDATE TLSP0010 SET ShpSts = 3");
        EXPECT_TRUE(Register()) << what;
        EXPECT_EQ(Stored("AnsLimDate, ShpDate, ArvExpDate, AnsMark"), written) << what;
        EXPECT_EQ(Counts(), "0 1") << what;
    }
}

TEST_F(RegistrationTest, AnUpdateTouchesTheAnswerAndTheStampsOnly)
{
    AddOrder(1);
    AddLine(1, 1, 1, "Biko = 'it''s', AnsLimUmu = 3, IndVal = 80");
    AddLine(1, 1, 2);
    const QString before = Stored("*");
    Load();
    TypeInto(1, AnswerDate, "260601");
    TypeInto(1, AnswerQuantity, "1234.5");
    EXPECT_TRUE(Register());
    EXPECT_EQ(Stored("AnsVal, AnsMark, UpdPGName, UpdDate, UpdTime"),
              "1234.5|2|TL030101|20260501|090807 0.0||||");
    file.Run("UPDATE TLSP0010 SET AnsLimDate = '', ShpDate = '', ArvExpDate = '', AnsVal = 0,"
             "AnsMark = '', UpdPGName = '', UpdDate = '', UpdTime = ''");
    EXPECT_EQ(Stored("*"), before);
}

TEST_F(RegistrationTest, ASplitTakesOverTheLineItWasSplitFrom)
{
    AddOrder(1);
    AddLine(1, 1, 2,
            "PayKeyNo = 'KEY-0007', PayKeySubNp = 1, ShpVal = 40, AnsLimUmu = 3, ShpSts = 3,"
            "ShpDate = '20260401', ArvExpDate = '20260404', Biko = 'the source', AnsVal = 40,"
            "AnsLimDate = '20260404', AnsMark = '2'");
    AddLine(1, 1, 3, "PayKeyNo = 'KEY-0009', Biko = 'not the source'");
    AddLine(1, 2, 5, "PayKeyNo = 'KEYX0011', Biko = 'not this sub-line'");
    Load();
    const int row = list.Row(1).ShpSubNo() == 2 ? 1 : 2;
    CopyLine(list, row);
    TypeInto(row + 1, AnswerDate, "260603");
    TypeInto(row + 1, AnswerQuantity, "12.5");
    EXPECT_TRUE(Register());
    EXPECT_EQ(Counts(), "1 0");
    EXPECT_EQ(Stored("Biko, AccSubNo, PayKeyNo, PayKeySubNp, IndVal, AnsVal, ShpVal, AnsLimDate,"
                     "AnsMark, AnsLimUmu, ShpSts, ShpDate, ArvExpDate, UpdPGName, UpdDate, UpdTime",
                     "ShpSubNo = 6"),
              "the source|1|KEY-0010|2|0.0|12.5|0.0|20260603|2|0|1|20260531|20260603|TL030101|"
              "20260501|090807");
    EXPECT_EQ(Cells(row + 1, {ShpSubNo, LoadedDate, LoadedQuantity}), "6|20260603|12.500");
}

TEST_F(RegistrationTest, AWrittenRowCountsAsUnchangedAndShowsWhatAReloadShows)
{
    AddOrder(1);
    AddOrder(2);
    AddLine(1, 1, 1, "AnsVal = 40, LimDate = ''");
    AddLine(1, 1, 2, "AnsVal = 10, AnsLimDate = '20260601', AnsMark = '2'");
    AddLine(2, 1, 1, "AnsVal = 5");
    Load();
    CopyLine(list, 1);
    grid.selectAll(); // all are written, whether they have a date or not
    TypeInto(1, AnswerQuantity, "41");
    TypeInto(3, AnswerDate, "260520");
    grid.selectAll();
    EXPECT_TRUE(Register());
    EXPECT_EQ(Counts(), "1 2");
    const auto sortedRows = [&] {
        QStringList rows;
        for (int row = 1; row <= list.RowCount(); ++row)
            rows += WholeRow(row);
        rows.sort();
        return rows;
    };
    for (int row = 1; row <= list.RowCount(); ++row)
        EXPECT_FALSE(list.Row(row).IsChanged()) << row;
    const QStringList shown = sortedRows();
    Load();
    EXPECT_EQ(sortedRows(), shown);
    // Nothing is left to write but for its being selected.
    file.Run("UPDATE TLSP0010 SET UpdPGName = 'OTHER'");
    EXPECT_TRUE(Register());
    EXPECT_EQ(Stored("DISTINCT UpdPGName"), "OTHER");
}

TEST_F(RegistrationTest, AFailingOrderIsRolledBackAndMayBeRegisteredAgain)
{
    AddOrder(1);
    AddOrder(2);
    AddOrder(3);
    AddLine(1, 1, 1);
    AddLine(2, 1, 1);
    AddLine(2, 1, 2);
    AddLine(3, 1, 1);
    Load();
    for (int row = 1; row <= 4; ++row)
        TypeInto(row, AnswerDate, "260601");
    file.Run("UPDATE TLSP0010 SET DpoFlg = 1 WHERE " + Where(2, 1, 2));
    EXPECT_FALSE(Register());
    EXPECT_EQ(boxes.TakeTexts(),
              (std::vector<QString>{"データが存在しません\r", "登録されませんでした\r注文№ PO-2"}));
    EXPECT_EQ(Counts(), "0 1") << "only what was committed counts";
    EXPECT_EQ(Stored("AccNo, ShpSubNo, AnsLimDate"), "1|1|20260601 2|1| 2|2| 3|1|");
    EXPECT_EQ(Cells(1, {LoadedDate, LoadedQuantity}), "20260601|100.000");
    EXPECT_EQ(Cells(2, {ShpSubNo, LoadedDate, LoadedQuantity}), "1||100.000")
        << "a line of the failing order is as it was";
    EXPECT_EQ(Cells(3, {ShpSubNo, LoadedDate, LoadedQuantity}), "||0");
    EXPECT_EQ(Cells(4, {ShpSubNo, LoadedDate, LoadedQuantity}), "1||100.000");

    // The failing row counts as a line not stored yet from here on.
    EXPECT_TRUE(Register());
    EXPECT_EQ(Counts(), "1 2");
    EXPECT_EQ(Stored("AccNo, ShpSubNo, AnsLimDate, DpoFlg"),
              "1|1|20260601|0 2|1|20260601|0 2|2||1 2|3|20260601|0 3|1|20260601|0");
    EXPECT_EQ(Cell(3, ShpSubNo), "3");
}

TEST_F(RegistrationTest, ASplitWithoutItsOrderFails)
{
    AddOrder(1);
    AddLine(1, 1, 1);
    Load();
    CopyLine(list, 1);
    list.SetCell(1, LoadedQuantity, list.Row(1).Cell(AnswerQuantity));
    file.Run("DELETE FROM TLSP0010");
    EXPECT_FALSE(Register());
    EXPECT_EQ(boxes.TakeTexts(),
              (std::vector<QString>{"データが存在しません\r", "登録されませんでした\r注文№ PO-1"}));
    EXPECT_EQ(Stored("COUNT(*)"), "0");
}

TEST_F(RegistrationTest, ManySelectedRowsTakeABreath)
{
    constexpr int Rows = 100'000;
    ListLine line;
    line.specifiedDate = "20260520";
    line.linKBN = "2";
    line.accSubNo = line.shpSubNo = "1";
    line.instructed = line.answered = line.loaded = 10;
    list.SetRedraw(false);
    for (int row = 1; row <= Rows; ++row) {
        line.accNo = QString::number(row / 3);
        list.Append(line, row % 10 == 0);
    }
    list.SetRedraw(true);
    grid.selectAll();
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(CheckDateSelection(list));
    SetAnswerDates(list, "20260601");
    SetSpecifiedDates(list);
    for (int row = 1; row <= Rows; ++row)
        EXPECT_EQ(DecideRow(list, row), RowKind::Changed);
    EXPECT_FALSE(CheckSingleRow(list));
    for (int copy = 0; copy < 20; ++copy)
        CopyLine(list, Rows / 2);
    EXPECT_EQ(list.RowsOfOrder(Rows / 2 / 3).size(), 23u);
    EXPECT_EQ(grid.SelectedText().count("26/05/20\n"), Rows);
    // A walk inside a walk would take minutes.
    EXPECT_LT(timer.elapsed(), 10'000 * BuildSlowness);
}
