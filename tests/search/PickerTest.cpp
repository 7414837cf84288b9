#include "search/MasterFixture.h"
#include "search/PickerLists.h"
#include "search/SC030010.h"
#include "search/SC040220R.h"

#include "grid/SpreadGrid.h"
#include "support/Operator.h"
#include "support/ScriptedBoxes.h"
#include "support/WindowHands.h"

#include <functional>

namespace {

class PickerTest : public MasterFixture
{
protected:
    PickerTest()
    {
        const std::pair<const char *, const char *> customers[]
            = {{"C01", "赤羽"}, {"D#1", "青山"}, {"D21", "上野"}, {"O'N", "引用"}};
        AddCustomer("C0001", "神田電機");
        AddCustomer("C0002", "旧得意先", 1);
        for (const auto &[code, name] : customers)
            AddCustomer(code, name);
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

    /// Opens a picker by its button on the search screen, with a code in the box; what stands in
    /// the boxes afterwards.
    QString Picked(const QString &button, const QString &window, const QString &box,
                   const QString &code, std::function<void(Operator &)> choose)
    {
        SC030010 screen(state);
        Operator player;
        QString picked;
        player.At("SC030010", "typing the code", [&] {
            player.Type("txt" + box + "CD", code);
            player.Click(button);
        });
        player.At(window, "choosing", [&] { choose(player); });
        player.At("SC030010", "back", [&] {
            for (const char *end : {"CD", "Name"})
                picked += player.Find<QLineEdit>("txt" + box + end)->text() + ' ';
            player.Click("cmdList");
        });
        player.Start();
        screen.exec();
        EXPECT_TRUE(player.IsDone()) << player.Failure().toStdString();
        EXPECT_EQ(state.conditions.isProductNameLiteral, !state.conditions.productName.isEmpty());
        return picked;
    }

    /// Plays in the product picker, opened by itself.
    void InPicker(const QString &what, std::function<void(Operator &)> act)
    {
        SC040220R picker(state);
        Operator player;
        player.At("SC040220R", what, [&] {
            act(player);
            player.Key(Qt::Key_Escape);
        });
        player.Start();
        picker.Pick();
        EXPECT_TRUE(player.IsDone()) << player.Failure().toStdString();
    }
};

} // namespace

TEST_F(PickerTest, ProductsWhoseCodeBeginsWithTheText)
{
    const ScriptedBoxes boxes;
    const QString all = "AB1 AB2 AB2 AC*1 AC1 b3 B[1 X#1: ";
    const std::pair<const char *, QString> lists[] = {
        {"AB", "AB1 AB2 AB2: 1"},
        {"ab2", "AB2 AB2: 1"},   // two rows of one code are a choice
        {"AC1", all + "5"},      // one product: all of them, on it
        {"AC*1", "AC*1 AC1: 1"}, // "*" fits anything
        {"X#", all + "8"},       // "#" itself
        {"X1", ": 0"},
        {"'", ": 0"},
        {"B[1", ": 0"}, // a list that is not closed fits nothing
        {"", all + "1"},
    };
    for (const auto &[code, listed] : lists)
        EXPECT_EQ(Listed(FillProducts, 2, {code, ""}), listed) << code;
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(PickerTest, CustomersAllWhenTheNameIsKnownElseByCode)
{
    const ScriptedBoxes boxes;
    const QString all = "C0001 C0002 C01 D#1 D21 O'N: ";
    const std::tuple<const char *, const char *, QString> lists[] = {
        {"d21", "上野", all + "5"}, {"ZZZ", "上野", all + "1"}, {"C00", "", "C0001 C0002: 1"},
        {"C0002", "", "C0002: 1"},  {"D#", "", "D#1: 1"},       {"O'", "", "O'N: 1"},
        {"[", "", ": 0"},           {"Z", "", ": 0"},           {"  ", "", all + "1"},
    };
    for (const auto &[code, name, listed] : lists)
        EXPECT_EQ(Listed(FillCustomers, 3, {code, name}), listed) << code;
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(PickerTest, TheChosenProductComesBackAndAClosedPickerChangesNothing)
{
    const std::tuple<const char *, std::function<void(Operator &)>, const char *> picks[] = {
        {"button", [](Operator &player) { player.Click("cmdSure"); }, "AB2 歯車 "},
        {"Enter",
         [](Operator &player) {
             for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Return})
                 player.Key(key);
         },
         "AB2 歯車大 "},
        {"double click",
         [](Operator &player) {
             player.ClickCell("spdPrdt", 2, 2);
             auto *grid = player.Find<SpreadGrid>("spdPrdt");
             QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, CellPoint(*grid, 2, 2));
         },
         "AB2 歯車大 "},
        {"close button",
         [](Operator &player) {
             player.Key(Qt::Key_Down);
             player.Click("cmdEnd");
         },
         "AB2  "},
        {"Esc on a button",
         [](Operator &player) {
             for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Escape})
                 player.Key(key);
         },
         "AB2  "},
        {"Esc in the list, after a double click on the headings",
         [](Operator &player) {
             auto *grid = player.Find<SpreadGrid>("spdPrdt");
             QTest::mouseDClick(grid->horizontalHeader()->viewport(), Qt::LeftButton);
             EXPECT_NE(Operator::Front("SC040220R"), nullptr);
             player.Key(Qt::Key_Escape);
         },
         "AB2  "},
    };
    for (const auto &[how, choose, picked] : picks) {
        state.conditions = {};
        EXPECT_EQ(Picked("cmdSSansho", "SC040220R", "AccHin", "AB2", choose), picked) << how;
    }
}

TEST_F(PickerTest, TheChosenCustomerComesBack)
{
    const auto current = [](Operator &player) {
        auto *grid = player.Find<SpreadGrid>("spdTokui");
        EXPECT_EQ(grid->RowCount(), 6);
        EXPECT_TRUE(grid->IsRowSelected(3));
        player.Click("cmdKakute");
    };
    EXPECT_EQ(Picked("cmdTSansho", "SC040230R", "Cust", "C01", current), "C01 赤羽 ");
    const auto typed = [](Operator &player) {
        player.Keys("o'");
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Return})
            player.Key(key);
    };
    EXPECT_EQ(Picked("cmdTSansho", "SC040230R", "Cust", "C01", typed), "O'N 引用 ");
}

TEST_F(PickerTest, AnEmptyListIsAMessageInPlaceOfThePicker)
{
    ScriptedBoxes boxes;
    state.pickedProduct = {"B[", ""};
    SC040220R picker(state);
    picker.Pick();
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"データが存在しません\r"});
    EXPECT_FALSE(picker.isVisible());
    EXPECT_EQ(state.pickedProduct.code, "B[");
}

TEST_F(PickerTest, TypingGoesToTheFirstRowThatBeginsWithIt)
{
    const int interval = QApplication::keyboardInputInterval();
    const struct
    {
        const char *typed;
        bool isQuick;
        int row;
    } cases[] = {
        {"x", true, 8},   {"ac1", true, 5}, {"AC*", true, 4},
        {"b[", true, 7},  {"zb", true, 1},  // what fits nothing moves nothing
        {"ab", false, 6}, {"bx", false, 8}, // each key for itself
    };
    for (const auto &[typed, isQuick, row] : cases) {
        QApplication::setKeyboardInputInterval(isQuick ? 60'000 : 0);
        InPicker(typed, [&](Operator &player) {
            player.Keys(typed);
            EXPECT_EQ(player.Find<SpreadGrid>("spdPrdt")->ActiveRow(), row) << typed;
        });
    }
    QApplication::setKeyboardInputInterval(interval);
}
