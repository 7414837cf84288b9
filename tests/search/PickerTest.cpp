#include "search/MasterFixture.h"
#include "search/PickerLists.h"
#include "search/SC030010.h"
#include "search/SC040220R.h"

#include "grid/SpreadGrid.h"
#include "support/ScriptedBoxes.h"
#include "support/WindowHands.h"

#include <functional>

namespace {

class PickerTest : public MasterFixture, public WindowHands
{
protected:
    PickerTest()
    {
        for (const char *code : {"C0001", "C01", "D#1", "D21", "O'N"})
            AddCustomer(code, "青山");
        AddCustomer("C0002", "旧得意先", 1);
        const std::pair<const char *, const char *> products[]
            = {{"AB1", "軸受"}, {"AB2", "歯車"}, {"AB2", "歯車大"}, {"AC*1", "星"},
               {"AC1", "軸"},   {"b3", "小"},    {"B[1", "括弧"},   {"X#1", "井桁"}};
        for (const auto &[code, name] : products)
            AddProduct(code, name);
    }

    /// What one of the pickers' routines fills a grid with: its first column, and the row it gives.
    template <typename Fill>
    QString Listed(Fill fill, int columns, const PickedCode &picked)
    {
        SpreadGrid grid;
        grid.SetColumnCount(columns);
        SpreadX spread;
        spread.Create(&grid);
        const int wanted = fill(state.db, picked, spread);
        QStringList codes;
        for (int row = 1; row <= grid.RowCount(); ++row)
            codes += grid.Model().Text(1, row);
        return codes.join(' ') + ": " + QString::number(wanted);
    }

    /// Opens the picker of these boxes by its button on the search screen, with a code in the box;
    /// what stands in the boxes afterwards.
    QString Picked(const QString &box, const QString &code,
                   const std::function<void(Operator &)> &choose)
    {
        const bool isCustomer = box == "txtCust";
        SC030010 screen(state);
        ShowWindow(screen);
        Type(box + "CD", code);
        PlayIn(isCustomer ? "SC040230R" : "SC040220R", choose,
               [&] { Click(isCustomer ? "cmdTSansho" : "cmdSSansho"); });
        const QString picked = Text(box + "CD") + ' ' + Text(box + "Name");
        Click("cmdList");
        EXPECT_EQ(state.conditions.isProductNameLiteral, !state.conditions.productName.isEmpty());
        return picked;
    }
};

} // namespace

TEST_F(PickerTest, ProductsWhoseCodeBeginsWithTheText)
{
    const QString all = "AB1 AB2 AB2 AC*1 AC1 b3 B[1 X#1: ";
    const std::pair<const char *, QString> lists[] = {
        {"ab2", "AB2 AB2: 1"},   // two rows of one code are a choice
        {"AC1", all + "5"},      // one product: all of them, on it
        {"AC*1", "AC*1 AC1: 1"}, // "*" fits anything
        {"X#", all + "8"},       // "#" itself
        {"B[1", ": 0"},          // a list that is not closed fits nothing
        {"", all + "1"},
    };
    for (const auto &[code, listed] : lists)
        EXPECT_EQ(Listed(FillProducts, 2, {code, ""}), listed) << code;
}

TEST_F(PickerTest, CustomersAllWhenTheNameIsKnownElseByCode)
{
    const QString all = "C0001 C0002 C01 D#1 D21 O'N: ";
    const std::tuple<const char *, const char *, QString> lists[] = {
        {"d21", "上野", all + "5"}, {"ZZZ", "上野", all + "1"}, {"C00", "", "C0001 C0002: 1"},
        {"D#", "", "D#1: 1"},       {"O'", "", "O'N: 1"},       {"[", "", ": 0"},
        {"  ", "", all + "1"},
    };
    for (const auto &[code, name, listed] : lists)
        EXPECT_EQ(Listed(FillCustomers, 3, {code, name}), listed) << code;
}

TEST_F(PickerTest, WhatIsChosenComesBackAndAClosedPickerChangesNothing)
{
    const auto keys = [](const std::vector<Qt::Key> &pressed) {
        return [=](Operator &player) {
            for (const Qt::Key key : pressed)
                player.Key(key);
        };
    };
    const auto doubleClick = [](Operator &player) {
        auto *grid = player.Find<SpreadGrid>("spdPrdt");
        QTest::mouseDClick(grid->horizontalHeader()->viewport(), Qt::LeftButton);
        EXPECT_NE(Operator::Front("SC040220R"), nullptr) << "a heading chooses nothing";
        ClickCell(*grid, 2, 2);
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, CellPoint(*grid, 2, 2));
    };
    const std::tuple<const char *, const char *, std::function<void(Operator &)>, const char *>
        picks[]
        = {{"txtAccHin", "AB2", [](Operator &player) { player.Click("cmdSure"); }, "AB2 歯車"},
           {"txtAccHin", "AB2", keys({Qt::Key_Down, Qt::Key_Return, Qt::Key_Return}), "AB2 歯車大"},
           {"txtAccHin", "AB", keys({Qt::Key_End, Qt::Key_Return, Qt::Key_Return}), "AB2 歯車大"},
           {"txtAccHin", "AB", keys({Qt::Key_End, Qt::Key_Home, Qt::Key_Return, Qt::Key_Return}),
            "AB1 軸受"},
           {"txtAccHin", "AB2", doubleClick, "AB2 歯車大"},
           {"txtAccHin", "AB2", [](Operator &player) { player.Click("cmdEnd"); }, "AB2 "},
           {"txtAccHin", "AB2", keys({Qt::Key_Escape}), "AB2 "},
           {"txtAccHin", "AB2", keys({Qt::Key_Tab, Qt::Key_Escape}), "AB2 "},
           {"txtCust", "C01", keys({Qt::Key_Down, Qt::Key_Return, Qt::Key_Return}), "D#1 青山"}};
    for (const auto &[box, code, choose, picked] : picks) {
        state.conditions = {};
        EXPECT_EQ(Picked(box, code, choose), picked);
    }
}

TEST_F(PickerTest, APickedCodeIsSelectedWhereTheOperatorIsStillInItsBox)
{
    SC030010 screen(state);
    ShowWindow(screen);
    const auto pick = [](Operator &player) {
        player.Key(Qt::Key_Return);
        player.Key(Qt::Key_Return);
    };
    PlayIn("SC040230R", pick, [] { Key(Qt::Key_1, Qt::AltModifier); });
    EXPECT_EQ(Text("txtCustCD"), "C0001");
    ShowWindow(screen);
    Keys("D21");
    EXPECT_EQ(Text("txtCustCD"), "D21");
}

TEST_F(PickerTest, AnEmptyListIsAMessageInPlaceOfThePicker)
{
    ScriptedBoxes boxes;
    state.pickedProduct = {"B[", ""};
    EXPECT_FALSE(SC040220R(state).Pick());
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"データが存在しません\r"});

    database.Run("DROP TABLE TLMT0020");
    EXPECT_FALSE(SC040220R(state).Pick());
    const auto texts = boxes.TakeTexts();
    EXPECT_EQ(texts.size(), 1U) << "nothing is known of the data";
    EXPECT_TRUE(texts.front().startsWith("ｴﾗｰｺｰﾄﾞ：3075"));
}

TEST_F(PickerTest, TypingGoesToTheFirstRowThatBeginsWithIt)
{
    const int interval = QApplication::keyboardInputInterval();
    const std::tuple<const char *, bool, int> cases[] = {
        {"ac1", true, 5}, {"AC*", true, 4},
        {"b[", true, 7},  {"zb", true, 1}, // what fits nothing moves nothing
        {"bx", false, 8},                  // each key for itself
    };
    for (const auto &[typed, isQuick, row] : cases) {
        QApplication::setKeyboardInputInterval(isQuick ? 60'000 : 0);
        SC040220R picker(state);
        const auto type = [&](Operator &player) {
            player.Keys(typed);
            EXPECT_EQ(player.Find<SpreadGrid>("spdPrdt")->ActiveRow(), row) << typed;
            player.Key(Qt::Key_Escape);
        };
        PlayIn("SC040220R", type, [&] { picker.Pick(); });
    }
    QApplication::setKeyboardInputInterval(interval);
}
