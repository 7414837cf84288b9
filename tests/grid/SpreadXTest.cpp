#include "grid/SpreadX.h"

#include "grid/SpreadGrid.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr auto UnknownItem = "GetItemPosAtRow\r項目名 '色' は存在しません。";

class SpreadXTest : public testing::Test
{
protected:
    void Layout(int columns, const QString &layout)
    {
        grid.SetColumnCount(columns);
        spread.Create(&grid);
        ASSERT_TRUE(spread.InitRowLayout(layout));
    }

    QString Heading(int column) const { return grid.Model().Heading(column); }

    /// The whole grid: cells joined by ",", rows by "/".
    QString Texts() const
    {
        QStringList rows;
        for (int row = 1; row <= grid.RowCount(); ++row) {
            QStringList cells;
            for (int column = 1; column <= grid.ColumnCount(); ++column)
                cells += grid.Model().Text(column, row);
            rows += cells.join(',');
        }
        return rows.join('/');
    }

    void AddRows(int count)
    {
        for (int row = 1; row <= count; ++row)
            spread.AddItem(QString("a%1\tb%1").arg(row));
    }

    ScriptedBoxes boxes;
    SpreadGrid grid;
    SpreadX spread;
};

/// What an operation shows, and that it leaves the grid as it was.
struct Refused
{
    const char *what;
    std::function<void(SpreadX &)> operation;
    QString message;
};

} // namespace

TEST_F(SpreadXTest, EveryOperationBeforeCreateIsRefused)
{
    int number = 7;
    bool isAny = true;
    QString text = "as it was";
    const Refused cases[] = {
        {"LineHeight", [](SpreadX &x) { x.SetLineHeight(20); }, {}},
        {"MinLines", [](SpreadX &x) { x.SetMinLines(2); }, {}},
        {"AddItem", [](SpreadX &x) { x.AddItem("a"); }, {}},
        {"UpdateItem", [](SpreadX &x) { x.UpdateItem("a", 1); }, {}},
        {"RemoveItem", [](SpreadX &x) { x.RemoveItem(1); }, {}},
        {"Clear", [](SpreadX &x) { x.Clear(-1, -1, -1, -1); }, {}},
        {"ActiveCell", [](SpreadX &x) { x.ActiveCell(1, 1); }, {}},
        {"DrawGrid", [](SpreadX &x) { x.DrawGrid(1, 0); }, {}},
        {"SetForeColor", [](SpreadX &x) { x.SetForeColor(0, 1, 1); }, {}},
        {"SetBackColor", [](SpreadX &x) { x.SetBackColor(0, 1, 1); }, {}},
        {"SetComboFindIndex", [](SpreadX &x) { x.SetComboFindIndex(1, 1, "a"); }, {}},
        {"GetValue", [&](SpreadX &x) { x.GetValue(1, 1, text); }, {}},
        {"SetValue", [](SpreadX &x) { x.SetValue(1, 1, "a"); }, {}},
        {"SetLockCell", [](SpreadX &x) { x.SetLockCell(true); }, {}},
        {"CopyItem", [](SpreadX &x) { x.CopyItem(); }, {}},
        {"AddNewRow", [&](SpreadX &x) { x.AddNewRow({}, number); }, {}},
        {"InitRowLayout", [](SpreadX &x) { EXPECT_FALSE(x.InitRowLayout("a")); }, {}},
        {"GetItemFromRow", [&](SpreadX &x) { x.GetItemFromRow("a", 1, text); }, {}},
        {"SetItemIntoRow", [](SpreadX &x) { x.SetItemIntoRow("a", 1, "b"); }, {}},
        {"GetAllItemsFromRow", [](SpreadX &x) { EXPECT_EQ(x.GetAllItemsFromRow(1), ""); }, {}},
        {"SetAllItemsIntoRow", [](SpreadX &x) { x.SetAllItemsIntoRow(1, "a"); }, {}},
        {"AddMultilineRow", [](SpreadX &x) { x.AddMultilineRow("a"); }, {}},
        {"SelRange", [&](SpreadX &x) { x.SelRange(number, number, isAny); }, {}},
    };
    for (const Refused &refused : cases) {
        refused.operation(spread);
        ASSERT_EQ(boxes.Shown().size(), 1u) << refused.what;
        EXPECT_EQ(boxes.Shown()[0].style, BoxStyle::Critical) << refused.what;
        EXPECT_EQ(boxes.Shown()[0].title, "エラー") << refused.what;
        EXPECT_EQ(boxes.TakeTexts()[0], "コンポーネントが設定されていません") << refused.what;
    }
    EXPECT_EQ(number, 7);
    EXPECT_EQ(text, "as it was");
    EXPECT_EQ(spread.MinLines(), 0);
}

TEST_F(SpreadXTest, CreateTakesAGridAlone)
{
    QLineEdit box;
    for (QObject *control : {static_cast<QObject *>(&box), static_cast<QObject *>(nullptr)}) {
        spread.Create(control);
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"コンポーネントの指定に誤りがあります"});
        EXPECT_EQ(spread.Client(), nullptr);
    }
    grid.SetRowHeight(1, 31);
    spread.Create(&grid);
    EXPECT_EQ(spread.Client(), &grid);
    EXPECT_EQ(spread.LineHeight(), 31);
    spread.SetLineHeight(44);
    EXPECT_EQ(spread.LineHeight(), 44);
    EXPECT_EQ(grid.RowHeight(), 44);
}

TEST_F(SpreadXTest, LayoutNamesColumnsAndLines)
{
    const struct
    {
        const char *layout;
        int lines;
        QStringList headings; ///< of three columns
    } cases[] = {
        {"a\tb\tc", 1, {"a", "b", "c"}},
        {"a;b;c", 1, {"a", "b", "c"}},
        {"a\tb;c", 1, {"a", "b", "c"}},
        {"a;b\tc", 1, {"a;b", "c", ""}}, // ";" counts behind the last tab only
        {" a \t b\tc ", 1, {"a", "b", "c"}},
        {"a\tb\tc\td\te", 1, {"a", "b", "c"}},
        {"a\tb\rd", 2, {"a\rd", "b\r", "\r"}},
        {"a\rb\rc\rd", 3, {"a\rb\rc", "\r\r", "\r\r"}},
        {"", 1, {"", "", ""}},
    };
    for (const auto &[layout, lines, headings] : cases) {
        Layout(3, layout);
        EXPECT_EQ(spread.Lines(), lines) << layout;
        EXPECT_EQ(QStringList({Heading(1), Heading(2), Heading(3)}), headings) << layout;
    }
}

TEST_F(SpreadXTest, ItemsAreFoundByNameWithoutCase)
{
    Layout(3, "CustCD\tName\tDate\rTel\tcustcd\rLast");
    const struct
    {
        const char *name;
        int column, line;
    } cases[] = {{"CustCD", 1, 1}, {"CUSTCD", 1, 1}, {"date", 3, 1}, {"tel", 1, 2}, {"LAST", 1, 3}};
    for (const auto &[name, column, line] : cases) {
        EXPECT_EQ(spread.GetColPosAtRow(name), column) << name;
        EXPECT_EQ(spread.GetLinePosAtRow(name), line) << name;
    }
    EXPECT_TRUE(boxes.Shown().empty());

    EXPECT_EQ(spread.GetColPosAtRow("色"), 0);
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{UnknownItem});
    int column = 2;
    int line = 1;
    spread.GetItemPosAtRow("色", column, line); // a caller's own numbers stay, and count as found
    EXPECT_EQ(column, 2);
    EXPECT_TRUE(boxes.Shown().empty());

    QString name;
    spread.GetItemNameAtRow(1, 2, name);
    EXPECT_EQ(name, "Tel");
    for (const auto &[outsideColumn, outsideLine] : {std::pair{0, 1}, {4, 1}, {1, 0}, {1, 4}}) {
        spread.GetItemNameAtRow(outsideColumn, outsideLine, name);
        EXPECT_EQ(name, "");
    }
}

TEST_F(SpreadXTest, RowsAreInsertedUpdatedAndRemoved)
{
    Layout(2, "a\tb");
    AddRows(2);
    const struct
    {
        const char *what;
        std::function<void()> operation;
        const char *texts;
        int items;
    } steps[] = {
        {"in the middle", [&] { spread.AddItem("x\ty", 2); }, "a1,b1/x,y/a2,b2", 3},
        {"at the end by number", [&] { spread.AddItem("z", 4); }, "a1,b1/x,y/a2,b2/z,", 4},
        {"multi-line", [&] { spread.AddMultilineRow("m;n", 1); }, "m,n/a1,b1/x,y/a2,b2/z,", 5},
        {"update", [&] { spread.UpdateItem("u", 3); }, "m,n/a1,b1/u,/a2,b2/z,", 5},
        {"remove", [&] { spread.RemoveItem(1); }, "a1,b1/u,/a2,b2/z,", 4},
        {"remove none", [&] { spread.RemoveItem(0); }, "a1,b1/u,/a2,b2/z,", 4},
        {"remove beyond", [&] { spread.RemoveItem(5); }, "a1,b1/u,/a2,b2/z,", 4},
        {"a line break stays in its cell", [&] { spread.UpdateItem("1\r2\tb", 1); },
         "1\r2,b/u,/a2,b2/z,", 4},
        {"all cells of a row", [&] { spread.SetAllItemsIntoRow(2, "p\tq\tr"); },
         "1\r2,b/p,q/a2,b2/z,", 4},
    };
    for (const auto &[what, operation, texts, items] : steps) {
        operation();
        EXPECT_EQ(Texts(), texts) << what;
        EXPECT_EQ(spread.ItemCount(), items) << what;
        EXPECT_EQ(grid.RowCount(), items) << what;
    }
    EXPECT_EQ(spread.GetAllItemsFromRow(1), "1\r2\tb");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SpreadXTest, ARowOutOfRangeIsReportedAndChangesNothing)
{
    Layout(2, "a\tb");
    spread.SetMinLines(5); // grid rows beyond the items are no items
    AddRows(2);
    const QString before = Texts();
    int newRow = 0;
    QString value = "as it was";
    std::vector<Refused> cases;
    for (const int row : {-1, 0, 4})
        cases.push_back({"insert", [row](SpreadX &x) { x.AddItem("x", row); }, "挿入行指定エラー"});
    cases.push_back({"new row", [&](SpreadX &x) { x.AddNewRow(9, newRow); }, "挿入行指定エラー"});
    for (const int row : {0, 3}) {
        cases.push_back(
            {"update", [row](SpreadX &x) { x.UpdateItem("x", row); }, "更新行指定エラー"});
        cases.push_back(
            {"get", [&, row](SpreadX &x) { x.GetItemFromRow("a", row, value); }, "行指定エラー"});
        cases.push_back(
            {"set", [row](SpreadX &x) { x.SetItemIntoRow("a", row, "x"); }, "行指定エラー"});
        cases.push_back(
            {"get all", [row](SpreadX &x) { x.GetAllItemsFromRow(row); }, "行指定エラー"});
        cases.push_back(
            {"set all", [row](SpreadX &x) { x.SetAllItemsIntoRow(row, "x"); }, "行指定エラー"});
    }
    cases.push_back({"get", [&](SpreadX &x) { x.GetItemFromRow("色", 1, value); }, UnknownItem});
    cases.push_back({"set", [](SpreadX &x) { x.SetItemIntoRow("色", 1, "x"); }, UnknownItem});
    for (const Refused &refused : cases) {
        refused.operation(spread);
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{refused.message}) << refused.what;
        EXPECT_EQ(Texts(), before) << refused.what;
        EXPECT_EQ(spread.ItemCount(), 2) << refused.what;
    }
    EXPECT_EQ(newRow, 0);
    EXPECT_EQ(value, "as it was");
}

TEST_F(SpreadXTest, ItemsAreTheLinesOfACell)
{
    Layout(2, "a\tb\rc\td\re");
    spread.AddItem("1\r2\r3\tB");
    spread.AddItem("");
    const auto item = [&](const char *name, std::optional<int> row) {
        QString value = "before";
        spread.GetItemFromRow(name, row, value);
        return value;
    };
    EXPECT_EQ(item("a", 1), "1");
    EXPECT_EQ(item("C", 1), "2");
    EXPECT_EQ(item("e", 1), "3");
    EXPECT_EQ(item("d", 1), ""); // fewer lines than the item's
    spread.SetItemIntoRow("c", 1, "x");
    spread.SetItemIntoRow("d", 1, "y");
    spread.SetItemIntoRow("e", 2, "z");
    EXPECT_EQ(Texts(), "1\rx\r3,B\ry/\r\rz,");
    spread.ActiveCell(2, 1);
    EXPECT_EQ(item("e", {}), "z"); // no row: the active one
    spread.SetItemIntoRow("a", {}, "w");
    EXPECT_EQ(item("a", 2), "w");
}

TEST_F(SpreadXTest, MinLinesKeepsGridRows)
{
    Layout(2, "a\tb");
    const struct
    {
        const char *what;
        std::function<void()> operation;
        int rows, items;
    } steps[] = {
        {"raised", [&] { spread.SetMinLines(3); }, 3, 0},
        {"negative", [&] { spread.SetMinLines(-1); }, 3, 0},
        {"items use the empty rows", [&] { AddRows(2); }, 3, 2},
        {"more items than that", [&] { AddRows(3); }, 5, 5},
        {"lowered below the items", [&] { spread.SetMinLines(1); }, 5, 5},
        {"raised again", [&] { spread.SetMinLines(4); }, 5, 5},
        {"above the minimum", [&] { spread.RemoveItem(1); }, 4, 4},
        {"at the minimum", [&] { spread.RemoveItem(1); }, 4, 3},
        {"below it", [&] { spread.RemoveItem(1); }, 4, 2},
        {"to nothing", [&] { spread.RemoveItem(1), spread.RemoveItem(1); }, 4, 0},
        {"nothing left", [&] { spread.RemoveItem(1); }, 4, 0},
        {"filled", [&] { AddRows(6); }, 6, 6},
        {"cleared", [&] { spread.Clear(-1, -1, -1, -1); }, 4, 0},
        {"lowered", [&] { spread.SetMinLines(0); }, 0, 0},
        {"filled again", [&] { AddRows(2); }, 2, 2},
        {"cleared to no row", [&] { spread.Clear(-1, -1, -1, -1); }, 0, 0},
    };
    for (const auto &[what, operation, rows, items] : steps) {
        operation();
        EXPECT_EQ(grid.RowCount(), rows) << what;
        EXPECT_EQ(spread.ItemCount(), items) << what;
        EXPECT_TRUE(grid.Redraw()) << what;
    }
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SpreadXTest, RemovingAtTheMinimumLeavesAnEmptyRowAtTheEnd)
{
    Layout(2, "a\tb");
    spread.SetMinLines(3);
    AddRows(3);
    spread.RemoveItem(2);
    EXPECT_EQ(Texts(), "a1,b1/a3,b3/,");
    EXPECT_FALSE(grid.BlockMode());
}

TEST_F(SpreadXTest, ClearEmptiesABlock)
{
    const struct
    {
        int column1, column2, row1, row2;
        const char *texts;
    } cases[] = {
        {-1, -1, -1, -1, ",/,/,"},
        {2, 2, -1, 0, "a1,/a2,/a3,"},
        {-1, 1, 3, 2, "a1,b1/,/,"}, // rows in either order
        {2, 1, 1, 1, ",/a2,b2/a3,b3"},
    };
    for (const auto &[column1, column2, row1, row2, texts] : cases) {
        Layout(2, "a\tb");
        spread.SetMinLines(3);
        AddRows(4);
        spread.Clear(column1, column2, row1, row2);
        EXPECT_EQ(Texts(), texts);
        EXPECT_EQ(spread.ItemCount(), 0);
        EXPECT_FALSE(grid.BlockMode());
        spread.Clear(-1, -1, -1, -1);
    }
}

TEST_F(SpreadXTest, ColoursAndLocksGoToTheirCells)
{
    Layout(3, "a\tb\tc");
    AddRows(3);
    for (const bool isBlockMode : {false, true}) {
        grid.SetBlockMode(isBlockMode);
        spread.SetForeColor(qRgb(1, 2, 3), 2, 1);
        spread.SetBackColor(qRgb(4, 5, 6), 3, 2);
        spread.SetLockCell(true);
        spread.SetLockCell(false, 2, 1, 3, 2);
        spread.SetLockCell(true, 3, -1, 3, -1);
        EXPECT_EQ(grid.BlockMode(), isBlockMode);
    }
    QString locks;
    for (int row = 1; row <= 3; ++row) {
        for (int column = 1; column <= 3; ++column) {
            const CellStyle &style = grid.Model().Style(column, row);
            EXPECT_EQ(style.foreColor.has_value(), row == 2 && column == 1);
            EXPECT_EQ(style.backColor.has_value(), row == 3 && column == 2);
            locks += style.isLocked ? 'x' : '-';
        }
    }
    EXPECT_EQ(locks, "x-xx-xxxx");
    EXPECT_EQ(grid.Model().Style(1, 2).foreColor, qRgb(1, 2, 3));
    EXPECT_EQ(grid.Model().Style(2, 3).backColor, qRgb(4, 5, 6));
}

TEST_F(SpreadXTest, ComboFindSelectsTheEqualEntry)
{
    Layout(2, "a\tb");
    AddRows(1);
    grid.SetCurrentCell(2, 1);
    grid.SetComboEntries({"未定", "済", "未"});
    const struct
    {
        const char *text;
        int index;
    } cases[] = {{"済", 1}, {"未", 2}, {"未定", 0}, {"定", -1}, {"済", 1}, {"", -1}};
    for (const auto &[text, index] : cases) {
        spread.SetComboFindIndex(2, 1, text);
        grid.SetCurrentCell(2, 1);
        EXPECT_EQ(grid.ComboIndex(), index) << text;
    }
    spread.SetComboFindIndex(1, 1, "a1"); // no combo box
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SpreadXTest, CopyItemInsertsTheActiveRowBelowItself)
{
    Layout(2, "a\tb");
    AddRows(3);
    spread.SetForeColor(qRgb(9, 9, 9), 2, 1);
    spread.ActiveCell(2, 2);
    spread.CopyItem();
    EXPECT_EQ(Texts(), "a1,b1/a2,b2/a2,b2/a3,b3");
    EXPECT_EQ(spread.ItemCount(), 4);
    EXPECT_EQ(grid.ActiveRow(), 3);
    EXPECT_EQ(grid.ActiveColumn(), 2);
    EXPECT_EQ(grid.Model().Style(1, 3).foreColor, qRgb(9, 9, 9));
    EXPECT_FALSE(grid.Model().Style(1, 4).foreColor);

    spread.Clear(-1, -1, -1, -1);
    spread.CopyItem();
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"行指定エラー"});
}

TEST_F(SpreadXTest, SelRangeSpansTheSelectedRows)
{
    Layout(2, "a\tb");
    AddRows(6);
    const auto select = [&](int first, int last) {
        grid.selectionModel()->select(
            QItemSelection(grid.model()->index(first - 1, 0), grid.model()->index(last - 1, 1)),
            QItemSelectionModel::Select);
    };
    int first = 7;
    int last = 7;
    bool isAny = true;
    spread.SelRange(first, last, isAny);
    EXPECT_FALSE(isAny);
    EXPECT_EQ(first, 7);
    select(5, 6);
    select(2, 2);
    spread.SelRange(first, last, isAny);
    EXPECT_TRUE(isAny);
    EXPECT_EQ(first, 2);
    EXPECT_EQ(last, 6);
}
