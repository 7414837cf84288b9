#include "lines/LinesFixture.h"

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
        {"OdrNo = 'A' || char(9) || 'B'", "AccHinName = 'x' || char(13, 10) || 'y'", Order,
         "A B/HIN-1/x  y/SUS"},
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
        {"ContractKBN = 'X'", "", Contract, "X/SEC"},
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
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"LinKBN = 1, NokiInfPath = ' C:\\A.TXT '", "both", "C:\\A.TXT"},
        {"LinKBN = 2, NokiInfPath = NULL", "dated", ""},
        {"LinKBN = 0, NokiInfKBN = 0, NokiInfPath = 'C:\\A.TXT'", "none", ""},
        {"LinKBN = 3, NokiInfKBN = 2", "none", ""},
    };
    for (const auto &[customer, answered, path] : cases) {
        Change("TLMT0040", "1", customer);
        LoadLine();
        const QString takes = list.At(1).IsAnswerable({" ", 1})          ? "both"
                              : list.At(1).IsAnswerable({"20261202", 1}) ? "dated"
                                                                         : "none";
        EXPECT_EQ(takes, answered) << customer;
        EXPECT_FALSE(list.At(1).IsAnswerable({"20261202", 0})) << customer;
        EXPECT_EQ(list.At(1).OutputPath(), path) << customer;
    }
}

TEST_F(LineTest, AnAnsweredDateComesWithItsMark)
{
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"20261202", "20261202", " "},
        {"20261202", "20261203", "*"},
        {"20261202", "", "*"},
        {"", "20261202", "*"},
        {"", "", " "},
    };
    for (const auto &[specified, date, mark] : cases) {
        for (const bool isStoredElsewhere : {false, true}) {
            LoadLine(
                QString("LimDate = '%1', AnsMark = '%2'").arg(specified, *mark == '*' ? "1" : "2"));
            if (isStoredElsewhere)
                list.At(1).TakeStored({date, 1});
            else
                list.At(1).SetDate(date);
            EXPECT_EQ(Cell(1, Marks).right(1), mark) << specified << ' ' << date;
        }
    }
}

TEST_F(LineTest, AnErrorStandsUntilItsCellIsMended)
{
    using enum LineError;
    LoadLine();
    Line &line = list.At(1);
    for (const LineError error : {NoQuantity, NoDate, NoSum, MoreThanOpen}) {
        line.SetError(error);
        line.SetDate("20260601");
        EXPECT_EQ(line.Error(), error == NoDate ? None : error);
        line.SetError(error);
        line.SetQuantity(5);
        EXPECT_EQ(line.Error(), error == NoDate ? error : None);
    }
}
