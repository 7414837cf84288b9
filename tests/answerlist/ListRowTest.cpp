#include "answerlist/ListRow.h"

#include "support/QtPrinters.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

using enum ListColumn;

/// A row of empty cells but for these.
QString RowOf(std::initializer_list<std::pair<ListColumn, const char *>> texts)
{
    QStringList cells = QString(int(Error) - 1, '\t').split('\t');
    for (const auto &[column, text] : texts)
        cells[int(column) - 1] = text;
    return cells.join('\t');
}

} // namespace

TEST(ListRowTest, CellsBeyondTheTextAreEmpty)
{
    const ListRow none((QString()));
    EXPECT_EQ(none.Cell(Marks), "");
    EXPECT_FALSE(none.IsStored());
    EXPECT_FALSE(none.IsShipped());
    const ListRow full(RowOf({{Skipped, "17"}, {Error, "error"}}) + "\tbeyond");
    EXPECT_EQ(full.Cell(Skipped), "17");
    EXPECT_EQ(full.Cell(Error), "error");
    EXPECT_EQ(full.Line(States, 2), "");
}

TEST(ListRowTest, ChangedIsAQuantityOrDateThatIsNotTheStoredOne)
{
    const struct
    {
        const char *quantity, *loadedQuantity, *date, *loadedDate;
        bool isChanged;
    } cases[] = {
        {"30.000", "30.000", "26/12/02", "20261202", false},
        {" 30.000", "30.000 ", " 26/12/02 ", "20261202 ", false},
        {"30.000", "30.000", "  ", "", false},
        {"30.001", "30.000", "26/12/02", "20261202", true},
        {"30", "30.000", "26/12/02", "20261202", true}, // as texts: 0 marks a line that failed
        {"0.000", "0", "", "", true},
        {"30.000", "30.000", "26/12/03", "20261202", true},
        {"30.000", "30.000", "", "20261202", true},
        {"30.000", "30.000", "26/12/02", "", true},
        {"30.000", "30.000", "97/05/28", "19970528", false},
        {"30.000", "30.000", "97/05/28", "20970528", true},
    };
    for (const auto &[quantity, loadedQuantity, date, loadedDate, isChanged] : cases) {
        const ListRow row(RowOf({{AnswerQuantity, quantity},
                                 {LoadedQuantity, loadedQuantity},
                                 {AnswerDate, date},
                                 {LoadedDate, loadedDate}}));
        EXPECT_EQ(row.IsChanged(), isChanged)
            << quantity << ' ' << loadedQuantity << ' ' << date << ' ' << loadedDate;
    }
}

TEST(ListRowTest, AnswerableByTheCustomersRule)
{
    const struct
    {
        const char *linKBN, *quantity, *date;
        bool isAnswerable;
    } cases[] = {
        {"1", "1.000", "", true},  {"1", "0.000", "26/12/02", false}, {"1", "", "26/12/02", false},
        {"2", "1.000", "", false}, {"2", "1.000", "26/12/02", true},  {"2", "1.000", " ", false},
        {"0", "1.000", "", false}, {"3", "1.000", "26/12/02", false}, {"", "1.000", "", false},
    };
    for (const auto &[linKBN, quantity, date, isAnswerable] : cases) {
        const ListRow row(
            RowOf({{LinKBN, linKBN}, {AnswerQuantity, quantity}, {AnswerDate, date}}));
        EXPECT_EQ(row.IsAnswerable(), isAnswerable) << linKBN << ' ' << quantity << ' ' << date;
    }
}

TEST(ListRowTest, AnAnswerDateComesWithItsMark)
{
    const struct
    {
        const char *specified, *date, *marks;
    } cases[] = {
        {"26/12/02\r\nP1", "26/12/02", "*\r\n "},
        {"26/12/02\r\nP1", "261202", "*\r\n "}, // typed form
        {"26/12/02\r\nP1", "26/12/03", "*\r\n*"},
        {"26/12/02\r\nP1", "", "*\r\n*"},
        {"\r\nP1", "", "*\r\n "},
        {"\r\n", "26/12/02", "*\r\n*"},
        {"00/00/00\r\nP1", "00/00/00", "*\r\n "},
    };
    for (const auto &[specified, date, marks] : cases)
        for (const char *before : {"*\r\n ", "*\r\n*"})
            EXPECT_EQ(
                WithAnswerDate(RowOf({{SpecifiedDate, specified},
                                      {AnswerDate, "26/01/01"},
                                      {Marks, before},
                                      {Error, "e"}}),
                               date),
                RowOf(
                    {{SpecifiedDate, specified}, {AnswerDate, date}, {Marks, marks}, {Error, "e"}}))
                << specified << date;
}
