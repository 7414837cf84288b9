#include "util/bDate.h"

#include "support/FixedClock.h"
#include "support/QtPrinters.h"

#include <QLineEdit>
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
        {"97/05/28", 0, "97/05/28"},
        {"97/05/28", 1, "970528"},
        {"970528", 1, "970528"},
        {"05/28", 1, "05/28"},
        {"", 1, ""},
        {"05/28", 2, "0528"},
        {"0528", 2, "200528"},
        {"9705", 2, "199705"},
        {"970528", 2, "970528"},
        {"97/05/28", 3, "970528"},
        {"970528", 3, "19970528"},
        {"050528", 3, "20050528"},
        {"97/05/28", 4, "97/05/28"},
        {"97/05/28", -1, "97/05/28"},
    };
    for (const auto &[text, kind, result] : cases)
        EXPECT_EQ(UnformatDateText(text, kind), result) << text << ' ' << kind;
}

TEST(bDate, StripDateSlashes)
{
    EXPECT_EQ(StripDateSlashes("97/05/28"), "970528");
    EXPECT_EQ(StripDateSlashes("97/05/2"), "97/05/2");
    EXPECT_EQ(StripDateSlashes("1997/05/28"), "1997/05/28");
    EXPECT_EQ(StripDateSlashes(""), "");
}

TEST(bDate, CenturyTurnsAt50)
{
    constexpr struct
    {
        const char *text;
        const char *result;
    } cases[] = {
        {"000101", "20000101"},
        {"490101", "20490101"},
        {"500101", "20500101"},
        {"510101", "19510101"},
        {"991231", "19991231"},
        {" 970528 ", "19970528"},
        {"50", "2050"},
        {"51", "1951"},
        {"5", ""},
        {" 5 ", ""},
        {"", ""},
        {"  ", ""},
        {"AB0101", "20AB0101"},
        {"9A0101", "209A0101"},
        {"5 0101", "205 0101"},
    };
    for (const auto &[text, result] : cases)
        EXPECT_EQ(AddCentury(text), result) << text;
}

TEST(bDate, DropCentury)
{
    EXPECT_EQ(DropCentury("19970528"), "970528");
    EXPECT_EQ(DropCentury("20500101"), "500101");
    EXPECT_EQ(DropCentury("19"), "");
    EXPECT_EQ(DropCentury("1"), "");
    EXPECT_EQ(DropCentury(""), "");
    EXPECT_EQ(DropCentury("        "), "");
    EXPECT_EQ(DropCentury(" 19970528"), "9970528") << "blanks count towards the two cut off";
}

TEST(bDate, IsValidDate)
{
    constexpr struct
    {
        const char *text;
        bool isValid;
    } cases[] = {
        {"19970528", true},   {"20000229", true},  {"19000229", false}, {"20040229", true},
        {"20010229", false},  {"24000229", true},  {"21000229", false}, {"19000101", true},
        {"18991231", false},  {"30001231", true},  {"30010101", false}, {"9705280", false},
        {"199705281", false}, {"", false},         {"        ", false}, {"19970028", false},
        {"19971328", false},  {"19970500", false}, {"19970131", true},  {"19970132", false},
        {"19970430", true},   {"19970431", false}, {"19970630", true},  {"19970631", false},
        {"19970731", true},   {"19970831", true},  {"19970930", true},  {"19970931", false},
        {"19971031", true},   {"19971130", true},  {"19971131", false}, {"19971231", true},
        {"97/05/28", false},  {"199A0528", false}, {"1997AB28", false}, {"199705-1", false},
        {"-9970528", false},  {"20010228", true},
    };
    for (const auto &[text, isValid] : cases)
        EXPECT_EQ(IsValidDate(text), isValid) << text;
}

TEST(bDate, TypedShownAndStoredFormsMeet)
{
    constexpr struct
    {
        const char *box;
        const char *stored;
    } cases[] = {
        {"97/05/28", "19970528"},
        {"970528", "19970528"},
        {"05/01/31", "20050131"},
        {"", ""},
    };
    for (const auto &[box, stored] : cases)
        EXPECT_EQ(StoredDate(box), stored) << box;
    EXPECT_EQ(ShownDate("19970528"), "97/05/28");
    EXPECT_EQ(ShownDate("20500101"), "50/01/01");
    EXPECT_EQ(ShownDate(""), "");
    EXPECT_EQ(ShownDate("        "), "");
}

TEST(bDate, DateBefore)
{
    constexpr struct
    {
        const char *date;
        int days;
        const char *result;
    } cases[] = {
        {"19970528", 3, "19970525"}, {"19970528", 0, "19970528"},
        {"20000301", 1, "20000229"}, {"19990301", 1, "19990228"},
        {"20000101", 1, "19991231"}, {"19970528", -4, "19970601"},
        {"19970229", 1, ""},         {"", 1, ""},
        {"970528", 1, ""},
    };
    for (const auto &[date, days, result] : cases)
        EXPECT_EQ(DateBefore(date, days), result) << date << ' ' << days;
}

TEST(bDate, FieldsAreConvertedInPlace)
{
    QLineEdit box("970528");
    FormatDateField(box, 1);
    EXPECT_EQ(box.text(), "97/05/28");
    FormatDateField(box, 1);
    EXPECT_EQ(box.text(), "97/05/28") << "a second leave changes nothing";
    UnformatDateField(box, 1);
    EXPECT_EQ(box.text(), "970528");
}

TEST(bDate, NowIsTheClocksDateAndTime)
{
    const FixedClock clock(QDateTime(QDate(2005, 1, 2), QTime(3, 4, 5)));
    EXPECT_EQ(NowDateText(), "05/01/02");
    EXPECT_EQ(NowTimeText(), "03:04:05");
    const FixedClock evening(QDateTime(QDate(1999, 12, 31), QTime(23, 59, 58, 999)));
    EXPECT_EQ(NowDateText(), "99/12/31");
    EXPECT_EQ(NowTimeText(), "23:59:58");
}
