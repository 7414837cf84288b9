#include "answerlist/LastRun.h"

#include "answerlist/ListPaper.h"
#include "lines/LinesFixture.h"

namespace {

class LastRunTest : public LinesFixture
{
protected:
    void Answer(int row)
    {
        list.At(row).Registered(list.At(row).Key().shpSubNo);
        list.At(row).Answered();
    }

    /// Split number, quantity and date of each line on the sheet to keep.
    QString Sheet()
    {
        const PaperTable sheet = AnswersPaper(run.Lines(), {});
        QStringList texts;
        for (int row = 0; row < sheet.rows; ++row)
            texts += sheet.text(row, 2) + ' ' + sheet.text(row, 7).trimmed() + ' '
                     + sheet.text(row, 8);
        return texts.join('|');
    }

    LastRun run;
};

} // namespace

TEST_F(LastRunTest, KeepsWhatWasOutputWhateverBecomesOfTheList)
{
    AddOrder(1);
    for (const int line : {1, 2, 3})
        AddLine(1, 1, line);
    Load();
    edits.SetQuantity(1, 10);
    edits.SetDate(1, "20260601");
    edits.SetQuantity(2, 20);
    Answer(1);
    Answer(2);
    run.Note(list, Rows({1}), {});
    edits.SetQuantity(1, 15);
    edits.SetDate(1, "");
    EXPECT_EQ(Sheet(), "1 10.000 2026/06/01|2 20.000 ");
    run.Note(list, Rows({1}), Rows({1})); // stopped
    EXPECT_EQ(Sheet(), "1 10.000 2026/06/01|2 20.000 ");

    // The next run answers the order without its second line.
    edits.SetQuantity(2, 0);
    list.At(2).Registered(2);
    Answer(1);
    run.Note(list, Rows({1, 2}), {});
    EXPECT_EQ(Sheet(), "1 15.000 ");
}
