#include "search/SearchForm.h"

#include "search/MasterFixture.h"

namespace {

const SortKeys Defaults = {"ACCHINCD", "ODRNO", "MFACTNO", "LIMDATE", "SHPDATE", "CUSTSECCD"};

using SearchForm = MasterFixture;

} // namespace

TEST_F(SearchForm, SortKeysKeepOnePlaceEach)
{
    const SortKeys exchanged = {"SHPDATE", "ODRNO", "MFACTNO", "LIMDATE", "ACCHINCD", "CUSTSECCD"};
    EXPECT_EQ(WithSortKey(Defaults, 0, "SHPDATE"), exchanged);
    EXPECT_EQ(WithSortKey(Defaults, 5, "CUSTSECCD"), Defaults);
    EXPECT_EQ(ValidSortKeys(exchanged), exchanged);
    EXPECT_EQ(ValidSortKeys({}), Defaults);
    EXPECT_EQ(ValidSortKeys({"ODRNO", "ODRNO", "MFACTNO", "LIMDATE", "SHPDATE", "CUSTSECCD"}),
              Defaults);
}

TEST_F(SearchForm, DateBoxAcceptsNothingOrACalendarDateInEitherForm)
{
    for (const char *text : {"", "  ", "970528", "97/05/28", "000229"})
        EXPECT_TRUE(IsDateBoxValid(text)) << text;
    for (const char *text : {"010229", "97052", "971301", "97/02/30", "5", "abcdef"})
        EXPECT_FALSE(IsDateBoxValid(text)) << text;
}

TEST_F(SearchForm, ProductNameIsFoundForTheOneLiveProductOfACode)
{
    AddProduct("P1", "軸受");
    AddProduct("P2", "歯車A");
    AddProduct("P2", "歯車B");
    AddProduct("P3", "旧品", 1);
    AddProduct("P4", "新品");
    AddProduct("P4", "廃品", 1);
    AddProduct("O'P", "引用");
    const std::pair<const char *, const char *> cases[]
        = {{"P1", "軸受"},  {"p1", "軸受"},  {"P4", "新品"},  {"O'P", "引用"}, {"P1   ", "軸受"},
           {"P2", nullptr}, {"P3", nullptr}, {"P9", nullptr}, {"P*", nullptr}};
    for (const auto &[code, name] : cases) {
        QString found = "before";
        EXPECT_EQ(FindProductName(state.db, code, found), name != nullptr) << code;
        EXPECT_EQ(found, name ? name : "before") << code;
    }
}

TEST_F(SearchForm, ALiteralTextFindsWhatBeginsWithItAndNothingElse)
{
    const QString stored[] = {"ﾈｼﾞ[M6]*", "ﾈｼﾞM", "A#1", "A11", "%_\\'|?", "%x", "[", "!a"};
    for (const QString &name : stored)
        AddProduct("P", name.toUtf8());
    for (const QString &name : stored) {
        const auto rows = state.db.OpenRS("Select HinName From TLMT0020 Where HinName Like '"
                                          + LiteralLikeText(SqlText(name)) + "*'");
        EXPECT_EQ(state.db.GetRecordCount(rows.get()), 1) << name.toStdString();
        EXPECT_EQ(state.db.NullToTrim(*rows, u"HinName"), name);
    }
}
