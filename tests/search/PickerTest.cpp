#include "search/PickerLists.h"
#include "search/SC030010.h"
#include "search/SC040220R.h"

#include "grid/SpreadGrid.h"
#include "search/ProductMaster.h"
#include "support/BuildSpeed.h"
#include "support/Operator.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr auto NoData = "データが存在しません\r";

struct List
{
    const char *code;
    const char *name;
    QStringList codes; ///< those listed
    int row;
};

class PickerTest : public testing::Test
{
protected:
    PickerTest()
    {
        DropProductKey(database);
        database.Open(state.db);
        const struct
        {
            const char *code, *name;
            int isDeleted;
        } customers[] = {{"C0001", "神田電機", 0}, {"C0002", "旧得意先", 1}, {"C01", "赤羽", 0},
                         {"D#1", "青山", 0},       {"D21", "上野", 0},       {"O'N", "引用", 0}};
        for (const auto &[code, name, isDeleted] : customers)
            database.Insert(
                "TLMT0040",
                {{"CustCD", code}, {"CustName", name}, {"TEL", "03-1"}, {"DpoFlg", isDeleted}});
        const std::pair<const char *, const char *> products[]
            = {{"AB1", "軸受"}, {"AB2", "歯車"}, {"AB2", "歯車大"}, {"AC*1", "星"},
               {"AC1", "軸"},   {"b3", "小"},    {"B[1", "括弧"},   {"X#1", "井桁"}};
        for (const auto &[code, name] : products)
            database.Insert("TLMT0020", {{"AccHinCD", code}, {"HinName", name}});
    }

    /// The first column of a grid filled by one of the pickers' routines.
    template <typename Fill>
    void Check(const List &list, int columns, Fill fill)
    {
        SpreadGrid grid;
        grid.SetColumnCount(columns);
        SpreadX spread;
        spread.Create(&grid);
        EXPECT_EQ(fill(state.db, PickedCode{list.code, list.name}, spread), list.row) << list.code;
        QStringList codes;
        for (int row = 1; row <= grid.RowCount(); ++row)
            codes += grid.Model().Text(1, row);
        EXPECT_EQ(codes, list.codes) << list.code;
    }

    TestDatabase database;
    ProgramState state;
};

const QStringList AllProducts = {"AB1", "AB2", "AB2", "AC*1", "AC1", "b3", "B[1", "X#1"};
const QStringList AllCustomers = {"C0001", "C0002", "C01", "D#1", "D21", "O'N"};

} // namespace

TEST_F(PickerTest, StatementsOfTheLists)
{
    EXPECT_EQ(BuildProductSql("A'#1  "), "Select * From TLMT0020  Where AccHinCD Like 'A''[#]1*' "
                                         "Order By AccHinCD, HinName ");
    EXPECT_EQ(BuildAllProductsSql(), "Select * From TLMT0020  Order By AccHinCD, HinName ");
    EXPECT_EQ(BuildCustomerSql({" C'#1 ", ""}), "Select CustCD,CustName,TEL From TLMT0040 Where "
                                                "CustCD LIKE 'C''[#]1*'ORDER BY CustCD");
    EXPECT_EQ(BuildCustomerSql({"C1", "神田"}),
              "Select CustCD,CustName,TEL From TLMT0040 Where true ORDER BY CustCD");
}

TEST_F(PickerTest, ProductsWhoseCodeBeginsWithTheText)
{
    const ScriptedBoxes boxes;
    const List lists[] = {
        {"AB", "", {"AB1", "AB2", "AB2"}, 1},
        {"ab2", "", {"AB2", "AB2"}, 1},   // two rows of one code are a choice
        {"AC1", "", AllProducts, 5},      // one product: all of them, on it
        {"AC*1", "", {"AC*1", "AC1"}, 1}, // "*" fits anything
        {"X#", "", AllProducts, 8},       // "#" itself
        {"X1", "", {}, 0},
        {"#", "", {}, 0},
        {"B[1", "", {}, 0}, // a list that is not closed fits nothing
        {"[", "", {}, 0},
        {"'", "", {}, 0},
        {"|", "", {}, 0},
        {"", "", AllProducts, 1},
    };
    for (const List &list : lists)
        Check(list, 2, FillProducts);
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(PickerTest, CustomersAllWhenTheNameIsKnownElseByCode)
{
    const ScriptedBoxes boxes;
    const List lists[] = {
        {"D21", "上野", AllCustomers, 5},
        {"d21", "上野", AllCustomers, 5},
        {"ZZZ", "上野", AllCustomers, 1},
        {"C00", "", {"C0001", "C0002"}, 1},
        {"C0002", "", {"C0002"}, 1},
        {"D#", "", {"D#1"}, 1},
        {"O'", "", {"O'N"}, 1},
        {"*N", "", {"O'N"}, 1},
        {"[", "", {}, 0},
        {"Z", "", {}, 0},
        {"  ", "", AllCustomers, 1},
    };
    for (const List &list : lists)
        Check(list, 3, FillCustomers);
    EXPECT_TRUE(boxes.Shown().empty());
}

namespace {

/// Plays a picker that the search screen opens.
class PickerPlay : public PickerTest
{
protected:
    struct Pick
    {
        const char *how;
        std::function<void(Operator &)> choose; ///< in the picker
        const char *code, *name;                ///< on the search screen afterwards
    };

    void Play(const QString &button, const QString &window, const QString &codeBox,
              const QString &nameBox, const QString &code, const Pick &pick)
    {
        state.conditions = {};
        SC030010 screen(state);
        Operator player;
        player.At("SC030010", "typing the code", [&] {
            player.Type(codeBox, code);
            player.Click(button);
        });
        player.At(window, pick.how, [&] { pick.choose(player); });
        player.At("SC030010", "back", [&] {
            EXPECT_EQ(player.Find<QLineEdit>(codeBox)->text(), pick.code) << pick.how;
            EXPECT_EQ(player.Find<QLineEdit>(nameBox)->text(), pick.name) << pick.how;
            player.Click("cmdExit");
        });
        player.Start();
        screen.exec();
        EXPECT_TRUE(player.IsDone()) << pick.how << ": " << player.Failure().toStdString();
    }
};

} // namespace

TEST_F(PickerPlay, TheChosenProductComesBackAndAClosedPickerChangesNothing)
{
    const auto escape = [](Operator &player) { player.Key(Qt::Key_Escape); };
    const Pick picks[] = {
        {"button", [](Operator &player) { player.Click("cmdSure"); }, "AB2", "歯車"},
        {"Enter twice",
         [](Operator &player) {
             player.Key(Qt::Key_Down);
             player.Key(Qt::Key_Return);
             player.Key(Qt::Key_Return);
         },
         "AB2", "歯車大"},
        {"double click",
         [](Operator &player) {
             player.ClickCell("spdPrdt", 2, 2);
             auto *grid = player.Find<SpreadGrid>("spdPrdt");
             const QRect cell = grid->visualRect(grid->model()->index(1, 1));
             QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
         },
         "AB2", "歯車大"},
        {"close button",
         [](Operator &player) {
             player.Key(Qt::Key_Down);
             player.Click("cmdEnd");
         },
         "AB2", ""},
        {"Esc in the list", escape, "AB2", ""},
        {"Esc on a button",
         [&](Operator &player) {
             player.Key(Qt::Key_Tab);
             escape(player);
         },
         "AB2", ""},
        {"no double click on the headings",
         [&](Operator &player) {
             QTest::mouseDClick(player.Find<SpreadGrid>("spdPrdt")->horizontalHeader()->viewport(),
                                Qt::LeftButton);
             EXPECT_NE(Operator::Front("SC040220R"), nullptr);
             escape(player);
         },
         "AB2", ""},
    };
    for (const Pick &pick : picks)
        Play("cmdSSansho", "SC040220R", "txtAccHinCD", "txtAccHinName", "AB2", pick);
}

TEST_F(PickerPlay, TheChosenCustomerComesBack)
{
    const Pick picks[] = {
        {"the current one",
         [](Operator &player) {
             auto *grid = player.Find<SpreadGrid>("spdTokui");
             EXPECT_EQ(grid->RowCount(), 6);
             EXPECT_EQ(grid->ActiveRow(), 3);
             EXPECT_TRUE(grid->IsRowSelected(3));
             player.Click("cmdKakute");
         },
         "C01", "赤羽"},
        {"typing and Enter",
         [](Operator &player) {
             player.Keys("o'");
             player.Key(Qt::Key_Return);
             player.Key(Qt::Key_Return);
         },
         "O'N", "引用"},
    };
    for (const Pick &pick : picks)
        Play("cmdTSansho", "SC040230R", "txtCustCD", "txtCustName", "C01", pick);
}

TEST_F(PickerTest, AnEmptyListIsAMessageInPlaceOfThePicker)
{
    ScriptedBoxes boxes;
    state.pickedProduct = {"B[", ""};
    SC040220R picker(state);
    picker.Pick();
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{NoData});
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
        {"x", true, 8},   {"a", true, 1},   {"ac1", true, 5}, {"AC*", true, 4},
        {"b", true, 6},   {"b[", true, 7},  {"zb", true, 1}, // what fits nothing moves nothing
        {"ab", false, 6}, {"bx", false, 8},                  // each key for itself
    };
    for (const auto &[typed, isQuick, row] : cases) {
        QApplication::setKeyboardInputInterval(isQuick ? 60'000 : 0);
        SC040220R picker(state);
        Operator player;
        player.At("SC040220R", typed, [&] {
            player.Keys(typed);
            EXPECT_EQ(player.Find<SpreadGrid>("spdPrdt")->ActiveRow(), row) << typed;
            player.Key(Qt::Key_Escape);
        });
        player.Start();
        picker.Pick();
        EXPECT_TRUE(player.IsDone()) << player.Failure().toStdString();
    }
    QApplication::setKeyboardInputInterval(interval);
}

TEST_F(PickerTest, FiftyThousandProductsOpenAndScrollAtOnce)
{
    database.Run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50000) "
                 "INSERT INTO TLMT0020 (AccHinCD, HinName, DpoFlg) "
                 "SELECT printf('Q%06d', i), '製品 ' || i, 0 FROM n");
    SC040220R picker(state);
    Operator player;
    QElapsedTimer timer;
    qint64 openMs = 0;
    qint64 scrollMs = 0;
    qint64 typeMs = 0;
    player.At("SC040220R", "opened", [&] {
        openMs = timer.elapsed();
        auto *grid = player.Find<SpreadGrid>("spdPrdt");
        EXPECT_EQ(grid->RowCount(), 50'008);
        timer.start();
        for (int page = 0; page < 100; ++page) {
            player.Key(Qt::Key_PageDown);
            grid->viewport()->repaint();
        }
        scrollMs = timer.elapsed();
        EXPECT_GT(grid->verticalScrollBar()->value(), 0);
        timer.start();
        player.Keys("q049999");
        typeMs = timer.elapsed();
        EXPECT_EQ(grid->Model().Text(1, grid->ActiveRow()), "Q049999");
        player.Key(Qt::Key_Escape);
    });
    player.Start();
    timer.start();
    picker.Pick();
    EXPECT_TRUE(player.IsDone()) << player.Failure().toStdString();
    RecordProperty("openMs", int(openMs));
    RecordProperty("scrollMs", int(scrollMs));
    RecordProperty("typeMs", int(typeMs));
    EXPECT_LT(openMs, 1'000 * BuildSlowness);
    EXPECT_LT(scrollMs / 100, 50 * BuildSlowness);
    EXPECT_LT(typeMs, 1'000 * BuildSlowness);
}
