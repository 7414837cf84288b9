#include "answerlist/ListRow.h"

#include "support/QtPrinters.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

/// A row of an EDI order's line, every value of it given.
ListLine FullLine()
{
    ListLine line;
    line.isEdi = true;
    line.hasOtherDate = true;
    line.orderNo = "PO-1";
    line.productCode = "HIN-1";
    line.productName = "部品";
    line.material = "SUS 10mm";
    line.ordered = Decimal::FromText(u"1234567.5");
    line.open = 1000;
    line.instructed = 999;
    line.shipped = Decimal::FromText(u"0.125");
    line.answered = Decimal::FromText(u"-12.0005");
    line.loaded = 30;
    line.answeredDate = "20261202";
    line.specifiedDate = "19970528";
    line.deliveryNo = "P1";
    line.isAnswered = true;
    line.isShipped = false;
    line.contractKind = "D";
    line.sectionCode = "SEC";
    line.accNo = "123456789012";
    line.accSubNo = "2";
    line.shpSubNo = "3";
    line.linKBN = "1";
    line.outputPath = "C:\\OUT.TXT";
    return line;
}

QString RowWith(ListColumn column, const QString &cell, QString rowText = RowText(FullLine()))
{
    QStringList cells = rowText.split('\t');
    cells[int(column) - 1] = cell;
    return cells.join('\t');
}

} // namespace

TEST(ListRowTest, RowTextHoldsEachCell)
{
    const QStringList cells = {
        "*\r\n*",
        "PO-1\r\nHIN-1\r\n部品\r\nSUS 10mm",
        "1,234,567.500\r\n1,000.000",
        "999.000\r\n0.125",
        "-12.001",
        "26/12/02",
        "97/05/28\r\nP1",
        "済\r\n　",
        "D 期間注文型取引(週)\r\nSEC",
        "123456789012",
        "2",
        "3",
        "20261202",
        "30.000",
        "1",
        "C:\\OUT.TXT",
    };
    EXPECT_EQ(RowText(FullLine()).split('\t'), cells);

    const QStringList empty = {
        " \r\n ",
        "\r\n\r\n\r\n",
        "0.000\r\n0.000",
        "0.000\r\n0.000",
        "0.000",
        "",
        "\r\n",
        "　\r\n　",
        "\r\n",
        "",
        "",
        "",
        "",
        "0.000",
        "",
        "",
    };
    EXPECT_EQ(RowText(ListLine()).split('\t'), empty);
}

TEST(ListRowTest, TextsOfTheDatabaseKeepToTheirCell)
{
    ListLine line = FullLine();
    line.orderNo = "A\tB";
    line.productName = "x\r\ny";
    line.sectionCode = "s\n1";
    line.outputPath = "C:\\a\tb";
    const ListRow row(RowText(line));
    EXPECT_EQ(row.OrderNo(), "A B");
    EXPECT_EQ(row.Line(ListColumn::Order, 2), "x  y");
    EXPECT_EQ(row.Line(ListColumn::Order, 3), "SUS 10mm");
    EXPECT_EQ(row.Line(ListColumn::Contract, 1), "s 1");
    EXPECT_EQ(row.Cell(ListColumn::OutputPath), "C:\\a b");
    EXPECT_EQ(row.AccNo(), 123456789012);
}

TEST(ListRowTest, CellsBeyondTheTextAreEmpty)
{
    const ListRow row(RowText(FullLine()));
    EXPECT_EQ(row.Cell(ListColumn::OutputPath), "C:\\OUT.TXT");
    EXPECT_EQ(row.Cell(ListColumn::Skipped), "");
    EXPECT_EQ(row.Cell(ListColumn::Error), "");
    EXPECT_EQ(row.Line(ListColumn::States, 2), "");
    const ListRow none((QString()));
    EXPECT_EQ(none.Cell(ListColumn::Marks), "");
    EXPECT_FALSE(none.IsStored());
    EXPECT_FALSE(none.IsShipped());
    // All 21 cells, and what stands behind them.
    const ListRow long_(RowWith(ListColumn::OutputPath, "path\t17\t18\t19\t20\terror\tbeyond"));
    EXPECT_EQ(long_.Cell(ListColumn::Skipped), "17");
    EXPECT_EQ(long_.Cell(ListColumn::Error), "error");
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
        {"30.000", "30.000", "", "", false},
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
        QString text = RowWith(ListColumn::AnswerQuantity, quantity);
        text = RowWith(ListColumn::LoadedQuantity, loadedQuantity, text);
        text = RowWith(ListColumn::AnswerDate, date, text);
        text = RowWith(ListColumn::LoadedDate, loadedDate, text);
        EXPECT_EQ(ListRow(text).IsChanged(), isChanged)
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
        QString text = RowWith(ListColumn::LinKBN, linKBN);
        text = RowWith(ListColumn::AnswerQuantity, quantity, text);
        text = RowWith(ListColumn::AnswerDate, date, text);
        EXPECT_EQ(ListRow(text).IsAnswerable(), isAnswerable)
            << linKBN << ' ' << quantity << ' ' << date;
    }
}

TEST(ListRowTest, AnAnswerDateComesWithItsMark)
{
    const struct
    {
        const char *specified; ///< the cell
        const char *date;
        const char *marks;
    } cases[] = {
        {"26/12/02\r\nP1", "26/12/02", "*\r\n "},
        {"26/12/02\r\nP1", "261202", "*\r\n "}, // typed form
        {"26/12/02\r\nP1", "26/12/03", "*\r\n*"},
        {"26/12/02\r\nP1", "", "*\r\n*"},
        {"\r\nP1", "", "*\r\n "},
        {"\r\n", "26/12/02", "*\r\n*"},
        {"00/00/00\r\nP1", "00/00/00", "*\r\n "},
    };
    for (const auto &[specified, date, marks] : cases) {
        for (const char *before : {"*\r\n ", "*\r\n*"}) {
            QString text = RowWith(ListColumn::SpecifiedDate, specified);
            text = RowWith(ListColumn::Marks, before, text);
            QStringList expected = text.split('\t');
            expected[int(ListColumn::Marks) - 1] = marks;
            expected[int(ListColumn::AnswerDate) - 1] = date;
            EXPECT_EQ(WithAnswerDate(text, date).split('\t'), expected) << specified << date;
        }
    }
}

TEST(ListRowTest, ASplitTakesItsOrderAndNoAnswer)
{
    ListLine line = FullLine();
    line.isShipped = true;
    const ListRow source(RowText(line) + "\t17\t18\t\t\terror");
    const QStringList cells = {
        "*\r\n ",
        "PO-1\r\nHIN-1\r\n部品\r\nSUS 10mm",
        "1,234,567.500\r\n1,000.000",
        "0.000\r\n0.000",
        "1,000.500",
        "",
        "97/05/28\r\nP1",
        "　\r\n　",
        "D 期間注文型取引(週)\r\nSEC",
        "123456789012",
        "2",
        "",
        "",
        "0.000",
        "1",
        "C:\\OUT.TXT",
        "17",
    };
    EXPECT_EQ(SplitRowText(source, Decimal::FromText(u"1000.5")).split('\t'), cells);
    const struct
    {
        const char *remainder, *quantity;
    } cases[] = {{"0", "0.000"}, {"-0.001", "0.000"}, {"0.001", "0.001"}};
    for (const auto &[remainder, quantity] : cases)
        EXPECT_EQ(ListRow(SplitRowText(source, Decimal::FromText(QString(remainder))))
                      .Cell(ListColumn::AnswerQuantity),
                  quantity);
}
