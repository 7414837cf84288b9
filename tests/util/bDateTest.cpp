#include "util/bDate.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(bDate, FormsOfEachKind)
{
    constexpr struct
    {
        const char *text;
        int kind;
        const char *shown;
        const char *back; ///< of what is shown
    } cases[] = {
        {"0528", 0, "05/28", "0528"},          {"123", 0, "12/03", "1203"},
        {"970528", 1, "97/05/28", "970528"},   {"97052", 1, "97/05/02", "970502"},
        {"97/05/28", 1, "97/05/28", "970528"}, {"9705", 1, "9705", "9705"},
        {"970528", 2, "05/28", "0528"},        {"97052", 2, "05/02", "0502"},
        {"9705", 2, "9705", "199705"},         {"19970528", 3, "97/05/28", "970528"},
        {"1997052", 3, "97/05/02", "970502"},  {"970528", 3, "970528", "19970528"},
        {"970528", 4, "970528", "970528"},     {"970528", -1, "970528", "970528"},
    };
    for (const auto &[text, kind, shown, back] : cases) {
        EXPECT_EQ(FormatDateText(text, kind), shown) << text << ' ' << kind;
        EXPECT_EQ(UnformatDateText(shown, kind), back) << text << ' ' << kind;
    }
}

TEST(bDate, CenturyTurnsAt50)
{
    constexpr std::pair<const char *, const char *> cases[] = {
        {"500101", "20500101"}, {"510101", "19510101"}, {" 970528 ", "19970528"}, {" 5 ", ""},
        {"AB0101", "20AB0101"}, {"5 0101", "205 0101"},
    };
    for (const auto &[text, result] : cases)
        EXPECT_EQ(AddCentury(text), result) << text;
    EXPECT_EQ(DropCentury(" 19970528"), "9970528") << "blanks count towards the two cut off";
    EXPECT_EQ(ShownDate("20500101"), "50/01/01");
    EXPECT_EQ(ShownDate("        "), "");
}

TEST(bDate, IsValidDate)
{
    constexpr std::pair<const char *, bool> cases[] = {
        {"19970528", true},  {"20000229", true},   {"19000229", false}, {"20010229", false},
        {"19000101", true},  {"18991231", false},  {"30001231", true},  {"30010101", false},
        {"9705280", false},  {"199705281", false}, {"        ", false}, {"19971328", false},
        {"19970500", false}, {"97/05/28", false},  {"199705-1", false},
    };
    for (const auto &[text, isValid] : cases)
        EXPECT_EQ(IsValidDate(text), isValid) << text;
}

TEST(bDate, ATypedDateIsSixDigitsAndNothingElse)
{
    const std::tuple<const char *, bool, bool> cases[] = {
        {"970528", true, true},     {"97/05/28", false, true},      {"010229", false, false},
        {"97052", false, false},    {"26 1 8", false, false},       {"26+1+8", false, false},
        {"261d08", false, false},   {"26x12y08", false, false},     {"26/1+/08", false, false},
        {"19970528", false, false}, {"２６１２０８", false, false},
    };
    for (const auto &[text, isTyped, isEither] : cases) {
        EXPECT_EQ(IsTypedDate(text), isTyped) << text;
        EXPECT_EQ(IsTypedOrShownDate(text), isEither) << text;
    }
}
