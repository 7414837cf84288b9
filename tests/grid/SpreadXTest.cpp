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

} // namespace

TEST_F(SpreadXTest, EveryOperationBeforeCreateIsRefused)
{
    int number = 7;
    bool isAny = true;
    QString text = "as it was";
    spread.SetLineHeight(20);
    spread.SetMinLines(2);
    spread.AddItem("a");
    spread.UpdateItem("a", 1);
    spread.RemoveItem(1);
    spread.Clear(-1, -1, -1, -1);
    spread.ActiveCell(1, 1);
    spread.DrawGrid(1, 0);
    spread.SetForeColor(0, 1, 1);
    spread.SetBackColor(0, 1, 1);
    spread.SetComboFindIndex(1, 1, "a");
    spread.GetValue(1, 1, text);
    spread.SetValue(1, 1, "a");
    spread.SetLockCell(true);
    spread.CopyItem();
    spread.AddNewRow({}, number);
    EXPECT_FALSE(spread.InitRowLayout("a"));
    spread.GetItemFromRow("a", 1, text);
    spread.SetItemIntoRow("a", 1, "b");
    EXPECT_EQ(spread.GetAllItemsFromRow(1), "");
    spread.SetAllItemsIntoRow(1, "a");
    spread.AddMultilineRow("a");
    spread.SelRange(number, number, isAny);
    EXPECT_EQ(boxes.Shown().size(), 23u);
    for (const MessageBoxRequest &box : boxes.Shown()) {
        EXPECT_EQ(box.style, BoxStyle::Critical);
        EXPECT_EQ(box.title, "エラー");
        EXPECT_EQ(box.text, "コンポーネントが設定されていません");
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
    } cases[] = {{"CUSTCD", 1, 1}, {"date", 3, 1}, {"tel", 1, 2}, {"LAST", 1, 3}};
    for (const auto &[name, column, line] : cases) {
        EXPECT_EQ(spread.GetColPosAtRow(name), column) << name;
        EXPECT_EQ(spread.GetLinePosAtRow(name), line) << name;
    }
    EXPECT_EQ(spread.GetColPosAtRow("色"), 0);
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{UnknownItem});
    int column = 2;
    int line = 1;
    spread.GetItemPosAtRow("色", column, line); // a caller's own numbers stay, and count as found
    EXPECT_EQ(column, 2);
    EXPECT_TRUE(boxes.Shown().empty());

    const std::tuple<int, int, const char *> names[]
        = {{1, 2, "Tel"}, {0, 1, ""}, {4, 1, ""}, {1, 0, ""}, {1, 4, ""}};
    for (const auto &[atColumn, atLine, expected] : names) {
        QString name = "before";
        spread.GetItemNameAtRow(atColumn, atLine, name);
        EXPECT_EQ(name, expected) << atColumn << ' ' << atLine;
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
    } steps[] = {
        {"in the middle", [&] { spread.AddItem("x\ty", 2); }, "a1,b1/x,y/a2,b2"},
        {"at the end by number", [&] { spread.AddItem("z", 4); }, "a1,b1/x,y/a2,b2/z,"},
        {"multi-line", [&] { spread.AddMultilineRow("m;n", 1); }, "m,n/a1,b1/x,y/a2,b2/z,"},
        {"update", [&] { spread.UpdateItem("u", 3); }, "m,n/a1,b1/u,/a2,b2/z,"},
        {"remove", [&] { spread.RemoveItem(1); }, "a1,b1/u,/a2,b2/z,"},
        {"remove none", [&] { spread.RemoveItem(0); }, "a1,b1/u,/a2,b2/z,"},
        {"remove beyond", [&] { spread.RemoveItem(5); }, "a1,b1/u,/a2,b2/z,"},
        {"a line break", [&] { spread.UpdateItem("1\r2\tb", 1); }, "1\r2,b/u,/a2,b2/z,"},
        {"a whole row", [&] { spread.SetAllItemsIntoRow(2, "p\tq\tr"); }, "1\r2,b/p,q/a2,b2/z,"},
    };
    for (const auto &[what, operation, texts] : steps) {
        operation();
        EXPECT_EQ(Texts(), texts) << what;
        EXPECT_EQ(spread.ItemCount(), grid.RowCount()) << what;
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
    const auto check = [&](const char *message, std::initializer_list<int> rows, auto operation) {
        for (const int row : rows) {
            operation(row);
            EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{message}) << row;
            EXPECT_EQ(Texts(), before) << message << row;
            EXPECT_EQ(spread.ItemCount(), 2) << message << row;
        }
    };
    check("挿入行指定エラー", {-1, 0, 4}, [&](int row) { spread.AddItem("x", row); });
    check("挿入行指定エラー", {9}, [&](int row) { spread.AddNewRow(row, newRow); });
    check("更新行指定エラー", {0, 3}, [&](int row) { spread.UpdateItem("x", row); });
    check("行指定エラー", {0, 3}, [&](int row) { spread.GetItemFromRow("a", row, value); });
    check("行指定エラー", {0, 3}, [&](int row) { spread.SetItemIntoRow("a", row, "x"); });
    check("行指定エラー", {0, 3}, [&](int row) { spread.GetAllItemsFromRow(row); });
    check("行指定エラー", {0, 3}, [&](int row) { spread.SetAllItemsIntoRow(row, "x"); });
    check(UnknownItem, {1}, [&](int row) { spread.GetItemFromRow("色", row, value); });
    check(UnknownItem, {1}, [&](int row) { spread.SetItemIntoRow("色", row, "x"); });
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
        {"cleared", [&] { spread.Clear(-1, -1, -1, -1); }, 4, 0},
        {"nothing left", [&] { spread.RemoveItem(1); }, 4, 0},
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

    spread.SetMinLines(3);
    AddRows(3);
    spread.RemoveItem(2);
    EXPECT_EQ(Texts(), "a1,b1/a3,b3/,") << "the empty row stands at the end";
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
        spread.SetForeColor(1, 2, 1);
        spread.SetBackColor(2, 3, 2);
        spread.SetLockCell(true);
        spread.SetLockCell(false, 2, 1, 3, 2);
        spread.SetLockCell(true, 3, -1, 3, -1);
        EXPECT_EQ(grid.BlockMode(), isBlockMode);
    }
    QString styles;
    for (int row = 1; row <= 3; ++row) {
        for (int column = 1; column <= 3; ++column) {
            const CellStyle &style = grid.Model().Style(column, row);
            styles += QString("%1%2%3 ")
                          .arg(style.foreColor.value_or(0))
                          .arg(style.backColor.value_or(0))
                          .arg(style.isLocked);
        }
    }
    EXPECT_EQ(styles, "001 000 001 101 000 001 001 021 001 ");
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
    spread.SetComboFindIndex(1, 1, "済");
    EXPECT_EQ(Texts(), "a1,") << "no combo box keeps its text";
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SpreadXTest, ACellThatIsNotThereIsLeftOut)
{
    Layout(2, "a\tb");
    AddRows(1);
    for (const auto &[column, row] : {std::pair{1, 99}, {99, 1}, {0, 1}, {1, -1}}) {
        QString value = "x";
        spread.SetValue(column, row, value);
        spread.GetValue(column, row, value);
        EXPECT_EQ(value, "");
        spread.SetForeColor(1, row, column);
        spread.SetBackColor(1, row, column);
        spread.SetComboFindIndex(column, row, "x");
        spread.ActiveCell(row, column);
    }
    spread.SetLockCell(true, 2, 1, 9, 9);
    EXPECT_TRUE(grid.IsLocked(2, 1));
    EXPECT_EQ(Texts(), "a1,b1");
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
    int first = 7;
    int last = 7;
    bool isAny = true;
    spread.SelRange(first, last, isAny);
    EXPECT_FALSE(isAny);
    EXPECT_EQ(first, 7);
    for (const int row : {5, 6, 2})
        grid.selectionModel()->select(grid.model()->index(row - 1, 0), QItemSelectionModel::Select);
    spread.SelRange(first, last, isAny);
    EXPECT_TRUE(isAny);
    EXPECT_EQ(first, 2);
    EXPECT_EQ(last, 6);
}
