#include "search/SearchForm.h"

#include "search/ProductMaster.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

const SortKeys Defaults = {"ACCHINCD", "ODRNO", "MFACTNO", "LIMDATE", "SHPDATE", "CUSTSECCD"};

} // namespace

TEST(SearchForm, AChosenSortKeyIsExchangedWithTheOneGivenUp)
{
    EXPECT_EQ(WithSortKey(Defaults, 0, "SHPDATE"),
              (SortKeys{"SHPDATE", "ODRNO", "MFACTNO", "LIMDATE", "ACCHINCD", "CUSTSECCD"}));
    EXPECT_EQ(WithSortKey(Defaults, 5, "CUSTSECCD"), Defaults);
    for (int position = 0; position < 6; ++position) {
        for (const char *key : SortKeyNames) {
            const SortKeys keys = WithSortKey(Defaults, position, key);
            EXPECT_EQ(keys[size_t(position)], key);
            EXPECT_TRUE(std::is_permutation(keys.begin(), keys.end(), Defaults.begin()));
        }
    }
}

TEST(SearchForm, SortKeysThatAreNoPermutationGiveTheDefaultOrder)
{
    const SortKeys exchanged = WithSortKey(Defaults, 1, "LIMDATE");
    EXPECT_EQ(ValidSortKeys(exchanged), exchanged);
    EXPECT_EQ(ValidSortKeys({}), Defaults);
    EXPECT_EQ(ValidSortKeys({"ODRNO", "ODRNO", "MFACTNO", "LIMDATE", "SHPDATE", "CUSTSECCD"}),
              Defaults);
}

TEST(SearchForm, DateBoxAcceptsNothingOrACalendarDateInEitherForm)
{
    const struct
    {
        QString text;
        bool isValid;
    } cases[] = {
        {"", true},          {"  ", true},      {"970528", true},  {"97/05/28", true},
        {"000229", true},    {"010229", false}, {"97052", false},  {"971301", false},
        {"97/02/30", false}, {"5", false},      {"abcdef", false},
    };
    for (const auto &[text, isValid] : cases)
        EXPECT_EQ(IsDateBoxValid(text), isValid) << text.toStdString();
}

TEST(SearchForm, ProductNameIsFoundForTheOneLiveProductOfACode)
{
    TestDatabase database;
    bDAO db;
    DropProductKey(database);
    database.Open(db);
    const auto add = [&](const char *code, const char *name, int isDeleted) {
        database.Insert("TLMT0020", {{"AccHinCD", code}, {"HinName", name}, {"DpoFlg", isDeleted}});
    };
    add("P1", "軸受", 0);
    add("P2", "歯車A", 0);
    add("P2", "歯車B", 0);
    add("P3", "旧品", 1);
    add("P4", "新品", 0);
    add("P4", "廃品", 1);
    add("O'P", "引用", 0);
    const struct
    {
        const char *code;
        const char *name;
    } cases[]
        = {{"P1", "軸受"},  {"p1", "軸受"},  {"P4", "新品"},  {"O'P", "引用"}, {"P1   ", "軸受"},
           {"P2", nullptr}, {"P3", nullptr}, {"P9", nullptr}, {"P*", nullptr}};
    for (const auto &[code, name] : cases) {
        QString found = "before";
        EXPECT_EQ(FindProductName(db, code, found), name != nullptr) << code;
        EXPECT_EQ(found, name ? name : "before") << code;
    }
}
