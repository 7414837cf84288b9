#include "util/bDate.h"

#include "support/FixedClock.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {

struct Conversion
{
    const char *text;
    int kind;
    const char *result;
};

} // namespace

TEST(bDate, FormatDateText)
{
    constexpr Conversion cases[] = {
        {"0528", 0, "05/28"},        {"123", 0, "12/03"},         {"12", 0, "12"},
        {"01234", 0, "01234"},       {"970528", 1, "97/05/28"},   {"97052", 1, "97/05/02"},
        {"9705", 1, "9705"},         {"9705280", 1, "9705280"},   {"", 1, ""},
        {"97/05/28", 1, "97/05/28"}, {"abcdef", 1, "ab/cd/ef"},   {" 70528", 1, " 7/05/28"},
        {"970528", 2, "05/28"},      {"97052", 2, "05/02"},       {"9705", 2, "9705"},
        {"19970528", 2, "19970528"}, {"19970528", 3, "97/05/28"}, {"1997052", 3, "97/05/02"},
        {"970528", 3, "970528"},     {"970528", 4, "970528"},     {"970528", -1, "970528"},
    };
    for (const auto &[text, kind, result] : cases)
        EXPECT_EQ(FormatDateText(text, kind), result) << text << ' ' << kind;
}

TEST(bDate, UnformatDateText)
{
    constexpr Conversion cases[] = {
        {"05/28", 0, "0528"},
        {"0528", 0, "0528"},
        {"97/05/28", 1, "970528"},
        {"970528", 1, "970528"},
        {"", 1, ""},
        {"05/28", 2, "0528"},
        {"0528", 2, "200528"},
        {"9705", 2, "199705"},
        {"97/05/28", 3, "970528"},
        {"970528", 3, "19970528"},
        {"97/05/28", 4, "97/05/28"},
    };
    for (const auto &[text, kind, result] : cases)
        EXPECT_EQ(UnformatDateText(text, kind), result) << text << ' ' << kind;
}

TEST(bDate, CenturyTurnsAt50)
{
    constexpr std::pair<const char *, const char *> cases[] = {
        {"500101", "20500101"},
        {"510101", "19510101"},
        {" 970528 ", "19970528"},
        {"50", "2050"},
        {"51", "1951"},
        {" 5 ", ""},
        {"  ", ""},
        {"AB0101", "20AB0101"},
        {"5 0101", "205 0101"},
    };
    for (const auto &[text, result] : cases)
        EXPECT_EQ(AddCentury(text), result) << text;
}

TEST(bDate, IsValidDate)
{
    constexpr std::pair<const char *, bool> cases[] = {
        {"19970528", true},  {"20000229", true},   {"19000229", false}, {"20010229", false},
        {"19000101", true},  {"18991231", false},  {"30001231", true},  {"30010101", false},
        {"9705280", false},  {"199705281", false}, {"        ", false}, {"19970028", false},
        {"19971328", false}, {"19970500", false},  {"19970431", false}, {"19970131", true},
        {"19970132", false}, {"97/05/28", false},  {"1997AB28", false}, {"199705-1", false},
    };
    for (const auto &[text, isValid] : cases)
        EXPECT_EQ(IsValidDate(text), isValid) << text;
}

TEST(bDate, ATypedDateIsSixDigitsAndNothingElse)
{
    const std::tuple<const char *, bool, bool> cases[] = {
        {"970528", true, true},         {"97/05/28", false, true},  {"000229", true, true},
        {"010229", false, false},       {"01/02/29", false, false}, {"97052", false, false},
        {"26 1 8", false, false},       {"2612.8", false, false},   {"26+1+8", false, false},
        {"261d08", false, false},       {"26x12y08", false, false}, {"26/1+/08", false, false},
        {" 970528", false, false},      {"19970528", false, false}, {"", false, false},
        {"２６１２０８", false, false},
    };
    for (const auto &[text, isTyped, isEither] : cases) {
        EXPECT_EQ(IsTypedDate(text), isTyped) << text;
        EXPECT_EQ(IsTypedOrShownDate(text), isEither) << text;
    }
}

TEST(bDate, StoredDatesAreShownWithoutTheirCentury)
{
    EXPECT_EQ(ShownDate("20500101"), "50/01/01");
    EXPECT_EQ(ShownDate("        "), "");
    EXPECT_EQ(ShownDate("1"), "");
    EXPECT_EQ(DropCentury(" 19970528"), "9970528") << "blanks count towards the two cut off";
    EXPECT_EQ(StoredDate("97/05/28"), "19970528");
}

TEST(bDate, DateBefore)
{
    EXPECT_EQ(DateBefore("20000301", 1), "20000229");
    EXPECT_EQ(DateBefore("20000101", 1), "19991231");
    EXPECT_EQ(DateBefore("19970528", -4), "19970601");
    EXPECT_EQ(DateBefore("19970229", 1), "");
}

TEST(bDate, NowIsTheClocksDateAndTime)
{
    const FixedClock clock(QDateTime(QDate(2005, 1, 2), QTime(3, 4, 5)));
    EXPECT_EQ(NowDateText(), "05/01/02");
    EXPECT_EQ(NowTimeText(), "03:04:05");
}
