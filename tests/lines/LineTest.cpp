#include "lines/LinesFixture.h"

#include "lines/AnswerDates.h"
#include "lines/Registration.h"

#include <functional>

namespace {

using LineTest = LinesFixture;

} // namespace

TEST_F(LineTest, CellsByTheStateOfTheLine)
{
    const std::tuple<const char *, const char *, int, const char *> cases[] = {
        {"AnsMark = '2'", "EDIKBN = 1", Marks, "*/*"},
        {"AnsMark = '1'", "EDIKBN = NULL", Marks, " / "},
        {"", "AccHinName = NULL, F019 = NULL", Order, "PO-1/HIN-1//"},
        // A tab or line break keeps to its cell and line.
        {"OdrNo = 'A\tB'", "AccHinName = 'x\r\ny'", Order, "A B/HIN-1/x  y/SUS"},
        {"AccVal = NULL", "ZanVal = NULL", OrderQuantities, "0.000/0.000"},
        // Without an answer the instructed quantity is proposed.
        {"AnsVal = 25.25, IndVal = 40", "", AnswerQuantity, "25.250"},
        {"AnsVal = 0, ShpSts = 2, IndVal = 40", "", AnswerQuantity, "40.000"},
        {"AnsVal = 0, ShpSts = 3", "", AnswerQuantity, "0.000"},
        {"AnsLimDate = NULL", "", AnswerDate, ""},
        // What is no date, or of another century, as well as it can be.
        {"AnsLimDate = '99999999'", "", AnswerDate, "99/99/99"},
        {"AnsLimDate = '19260520'", "", AnswerDate, "26/05/20"},
        {"AnsLimDate = 'ABC'", "", AnswerDate, "C"},
        {"LimDate = '', PayNo = NULL", "", SpecifiedDate, "/"},
        {"AccVal = 123456789.125", "ZanVal = 1234.5", OrderQuantities, "123,456,789.125/1,234.500"},
        {"IndVal = 0.5, ShpVal = 12", "", LineQuantities, "0.500/12.000"},
        {"AnsLimUmu = 1, ShpSts = 3", "", States, "　/済"},
        {"ContractKBN = NULL, CustSecCD = NULL", "", Contract, "/"},
    };
    for (const auto &[line, order, column, cell] : cases) {
        LoadLine(line, order);
        EXPECT_EQ(Cell(1, column), cell) << line << "; " << order;
    }
}

TEST_F(LineTest, WhatCountsAsChangedAndIsWritten)
{
    using Edit = std::function<void(Line &)>;
    const auto quantity = [](const char16_t *text) -> Edit {
        return [=](Line &line) { line.SetQuantity(Decimal::FromText(text)); };
    };
    const auto date
        = [](const char *text) -> Edit { return [=](Line &line) { line.SetDate(text); }; };
    const Edit none = [](Line &) {};
    using enum RowKind;
    const std::tuple<const char *, const char *, Edit, RowKind> cases[] = {
        {"unanswered", "", none, NotWritten},
        {"all that is open typed over it", "IndVal = 60", quantity(u"100"), Changed},
        {"the proposal typed", "IndVal = 60", quantity(u"60.0"), NotWritten},
        {"nothing typed over it", "IndVal = 60", quantity(u"0"), Changed},
        {"a thousandth", "AnsVal = 25", quantity(u"25.001"), Changed},
        {"a date", "AnsVal = 25", date("20260601"), Changed},
        {"put back", "AnsLimDate = '20260601'",
         [](Line &line) { line.SetDate("20260602"), line.SetDate("20260601"); }, NotWritten},
        {"no date", "AnsLimDate = '99999999'", none, NotWritten},
        {"a date of this century for it", "AnsLimDate = '19260520'", date("20260520"), Changed},
        {"shipped", "ShpSts = 3", quantity(u"6"), NotWritten},
        {"on its way", "ShpSts = 2", quantity(u"6"), Changed},
        {"failed", "", [](Line &line) { line.RegistrationFailed(); }, Changed},
        {"failed, then stored elsewhere", "",
         [](Line &line) { line.RegistrationFailed(), line.TakeStored(line.Now()); }, NotWritten},
    };
    for (const auto &[what, line, edit, kind] : cases) {
        LoadLine(line);
        edit(list.At(1));
        EXPECT_EQ(DecideRow(list.At(1), false), kind) << what;
        const bool mayBeWritten = kind == NotWritten && !list.At(1).IsShipped();
        EXPECT_EQ(DecideRow(list.At(1), true), mayBeWritten ? Selected : kind) << what;
        EXPECT_EQ(list.UnregisteredCount(), list.At(1).IsChanged()) << what;
        EXPECT_EQ(DecideRow(list.At(1).Split(0), false), NewLine) << what;
    }
}

TEST_F(LineTest, WhatTheCustomerAsksFor)
{
    for (const auto &[linKbn, answered] :
         {std::pair{0, "---"}, {1, "DU-"}, {2, "D--"}, {3, "---"}}) {
        Change("TLMT0040", "1 = 1", QString("LinKBN = %1").arg(linKbn));
        LoadLine();
        const Answer answers[] = {{"20261202", 1}, {" ", 1}, {"20261202", 0}};
        QString takes = "DU0"; // dated, undated, of no piece
        for (int at = 0; at < 3; ++at)
            if (!list.At(1).IsAnswerable(answers[at]))
                takes[at] = '-';
        EXPECT_EQ(takes, answered) << linKbn;
    }
}

TEST_F(LineTest, AnAnsweredDateComesWithItsMark)
{
    for (const auto &[date, mark] : {std::pair{"20261202", " "}, {"20261203", "*"}, {"", "*"}}) {
        for (const char *before : {"1", "2"}) {
            LoadLine(QString("LimDate = '20261202', AnsMark = ") + before);
            list.At(1).SetDate(date);
            EXPECT_EQ(Cell(1, Marks), QString(" /") + mark) << date;
            LoadLine(QString("LimDate = '20261202', AnsMark = ") + before);
            list.At(1).TakeStored({date, 1});
            EXPECT_EQ(Cell(1, Marks), QString(" /") + mark) << date;
        }
    }
}

TEST_F(LineTest, OnlySelectedOpenRowsGetADate)
{
    // Row 1 open and unanswered, 2 shipped, 3 open and answered, 4 without a specified date.
    AddOrder(1);
    AddLine(1, 1, 1);
    AddLine(1, 1, 2, "ShpSts = 3, AnsLimDate = '20260512'");
    AddLine(1, 1, 3, "AnsLimDate = '20260513'");
    AddLine(1, 1, 4, "LimDate = ''");
    Load();
    SetAnswerDates(edits, Rows({2, 3}), "20260601");
    SetSpecifiedDates(edits, Rows({1, 2, 4}));
    QString dates;
    for (int row = 1; row <= 4; ++row)
        dates += Cell(row, AnswerDate) + '|';
    EXPECT_EQ(dates, "26/05/20|26/05/12|26/06/01||");
    EXPECT_TRUE(CheckDateSelection(list, Rows({2, 3})));
}
