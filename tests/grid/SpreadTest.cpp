#include "grid/SpreadX.h"

#include "grid/SpreadGrid.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <QSignalSpy>
#include <functional>
#include <gtest/gtest.h>

namespace {

using Texts = std::vector<QString>;

constexpr auto UnknownItem = "GetItemPosAtRow\r項目名 '色' は存在しません。";

class SpreadTest : public testing::Test
{
protected:
    void Layout(int columns, const QString &layout)
    {
        grid.SetColumnCount(columns);
        spread.Create(&grid);
        ASSERT_TRUE(spread.InitRowLayout(layout));
    }

    /// What the views know of: cells joined by ",", rows by "/".
    QString Cells() const
    {
        QStringList rows;
        for (int row = 0; row < grid.model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < grid.ColumnCount(); ++column)
                cells += grid.model()->index(row, column).data(Qt::EditRole).toString();
            rows += cells.join(',');
        }
        return rows.join('/');
    }

    void AddRows(int count)
    {
        for (int row = 1; row <= count; ++row)
            spread.AddItem(QString("a%1\tb%1").arg(row));
    }

    /// Three rows of two columns.
    void Refill()
    {
        Layout(2, "a\tb");
        spread.Clear(-1, -1, -1, -1);
        AddRows(3);
    }

    ScriptedBoxes boxes;
    SpreadGrid grid;
    SpreadX spread;
};

} // namespace

TEST_F(SpreadTest, WithoutAGridNothingIsDone)
{
    QString text = "as it was";
    spread.AddItem("a");
    spread.GetItemFromRow("a", 1, text);
    EXPECT_FALSE(spread.InitRowLayout("a"));
    EXPECT_EQ(boxes.TakeTexts(), Texts(3, "コンポーネントが設定されていません"));
    EXPECT_EQ(text, "as it was");
    QLineEdit box;
    for (QObject *control : {static_cast<QObject *>(&box), static_cast<QObject *>(nullptr)}) {
        spread.Create(control);
        EXPECT_EQ(boxes.TakeTexts(), Texts{"コンポーネントの指定に誤りがあります"});
    }
    EXPECT_EQ(spread.Client(), nullptr);
}

TEST_F(SpreadTest, LayoutNamesColumnsAndLines)
{
    const std::pair<const char *, QStringList> cases[] = {
        {"a\tb;c", {"a", "b", "c"}},
        {"a;b\tc", {"a;b", "c", ""}}, // ";" counts behind the last tab only
        {" a \t b\tc \td", {"a", "b", "c"}},
        {"a\tb\rd", {"a\rd", "b\r", "\r"}},
        {"a\rb\rc\rd", {"a\rb\rc", "\r\r", "\r\r"}},
        {"", {"", "", ""}},
    };
    for (const auto &[layout, headings] : cases) {
        Layout(3, layout);
        for (int column = 1; column <= 3; ++column)
            EXPECT_EQ(grid.Model().Heading(column), headings[column - 1]) << layout;
    }
}

TEST_F(SpreadTest, ItemsAreFoundByNameWithoutCase)
{
    Layout(3, "CustCD\tName\tDate\rTel\tcustcd\rLast");
    const std::tuple<const char *, int, int> cases[]
        = {{"CUSTCD", 1, 1}, {"date", 3, 1}, {"tel", 1, 2}, {"LAST", 1, 3}};
    for (const auto &[name, column, line] : cases) {
        EXPECT_EQ(spread.GetColPosAtRow(name), column) << name;
        EXPECT_EQ(spread.GetLinePosAtRow(name), line) << name;
    }
    EXPECT_EQ(spread.GetColPosAtRow("色"), 0);
    EXPECT_EQ(boxes.TakeTexts(), Texts{UnknownItem});
    int column = 2;
    int line = 1;
    spread.GetItemPosAtRow("色", column, line); // a caller's own numbers stay, and count as found
    EXPECT_EQ(column, 2);
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SpreadTest, RowsAreInsertedUpdatedAndRemoved)
{
    Layout(2, "a\tb");
    AddRows(2);
    const std::pair<std::function<void()>, const char *> steps[] = {
        {[&] { spread.AddItem("x\ty", 2); }, "a1,b1/x,y/a2,b2"},
        {[&] { spread.AddItem("z", 4); }, "a1,b1/x,y/a2,b2/z,"},
        {[&] { spread.AddMultilineRow("m;n", 1); }, "m,n/a1,b1/x,y/a2,b2/z,"},
        {[&] { spread.UpdateItem("u", 3); }, "m,n/a1,b1/u,/a2,b2/z,"},
        {[&] { spread.RemoveItem(1); }, "a1,b1/u,/a2,b2/z,"},
        {[&] { spread.RemoveItem(0), spread.RemoveItem(5); }, "a1,b1/u,/a2,b2/z,"},
        {[&] { spread.UpdateItem("1\r2\tb", 1); }, "1\r2,b/u,/a2,b2/z,"},
        {[&] { spread.SetAllItemsIntoRow(2, "p\tq\tr"); }, "1\r2,b/p,q/a2,b2/z,"},
    };
    for (const auto &[operation, cells] : steps) {
        operation();
        EXPECT_EQ(Cells(), cells);
        EXPECT_EQ(spread.ItemCount(), grid.RowCount()) << cells;
    }
    EXPECT_EQ(spread.GetAllItemsFromRow(1), "1\r2\tb");
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SpreadTest, ARowOutOfRangeIsReportedAndChangesNothing)
{
    Layout(2, "a\tb");
    spread.SetMinLines(5); // grid rows beyond the items are no items
    AddRows(2);
    const QString before = Cells();
    const auto check = [&](const char *message, std::initializer_list<int> rows, auto operation) {
        for (const int row : rows) {
            operation(row);
            EXPECT_EQ(boxes.TakeTexts(), Texts{message}) << row;
            EXPECT_EQ(Cells(), before) << message << row;
            EXPECT_EQ(spread.ItemCount(), 2) << message << row;
        }
    };
    check("挿入行指定エラー", {0, 4}, [&](int row) { spread.AddItem("x", row); });
    check("更新行指定エラー", {0, 3}, [&](int row) { spread.UpdateItem("x", row); });
    check("行指定エラー", {0, 3}, [&](int row) { spread.SetItemIntoRow("a", row, "x"); });
    check("行指定エラー", {0, 3}, [&](int row) { spread.SetAllItemsIntoRow(row, "x"); });
    check("行指定エラー", {0, 3}, [&](int row) { spread.GetAllItemsFromRow(row); });
    check(UnknownItem, {1}, [&](int row) { spread.SetItemIntoRow("色", row, "x"); });
}

TEST_F(SpreadTest, ItemsAreTheLinesOfACell)
{
    Layout(2, "a\tb\rc\td\re");
    spread.AddItem("1\r2\r3\tB");
    spread.AddItem("");
    const auto item = [&](const char *name, std::optional<int> row) {
        QString value = "before";
        spread.GetItemFromRow(name, row, value);
        return value;
    };
    EXPECT_EQ(item("a", 1) + item("C", 1) + item("e", 1), "123");
    EXPECT_EQ(item("d", 1), ""); // fewer lines than the item's
    spread.SetItemIntoRow("c", 1, "x");
    spread.SetItemIntoRow("d", 1, "y");
    spread.ActiveCell(2, 1);
    spread.SetItemIntoRow("e", {}, "z"); // no row: the active one
    EXPECT_EQ(item("e", {}), "z");
    EXPECT_EQ(Cells(), "1\rx\r3,B\ry/\r\rz,");
}

TEST_F(SpreadTest, MinLinesKeepsGridRows)
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
        {"more items than that", [&] { AddRows(5); }, 5, 5},
        {"lowered below the items", [&] { spread.SetMinLines(1); }, 5, 5},
        {"raised again", [&] { spread.SetMinLines(4); }, 5, 5},
        {"above the minimum", [&] { spread.RemoveItem(1); }, 4, 4},
        {"at the minimum", [&] { spread.RemoveItem(2); }, 4, 3},
        {"cleared", [&] { spread.Clear(-1, -1, -1, -1); }, 4, 0},
        {"nothing left", [&] { spread.RemoveItem(1); }, 4, 0},
        {"lowered", [&] { spread.SetMinLines(0); }, 0, 0},
        {"filled again", [&] { AddRows(2); }, 2, 2},
    };
    for (const auto &[what, operation, rows, items] : steps) {
        operation();
        EXPECT_EQ(grid.RowCount(), rows) << what;
        EXPECT_EQ(spread.ItemCount(), items) << what;
        EXPECT_TRUE(grid.Redraw()) << what;
        if (what == std::string("at the minimum")) {
            EXPECT_EQ(Cells(), "a2,b2/a4,b4/a5,b5/,") << "the empty row stands at the end";
        }
    }
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(SpreadTest, ClearEmptiesABlock)
{
    const struct
    {
        int column1, column2, row1, row2;
        const char *cells;
    } cases[] = {
        {-1, -1, -1, -1, ",/,/,"},
        {2, 2, -1, 0, "a1,/a2,/a3,"},
        {-1, 1, 3, 2, "a1,b1/,/,"}, // rows in either order
    };
    for (const auto &[column1, column2, row1, row2, cells] : cases) {
        Layout(2, "a\tb");
        spread.SetMinLines(3);
        AddRows(4);
        spread.Clear(column1, column2, row1, row2);
        EXPECT_EQ(Cells(), cells);
        EXPECT_FALSE(grid.BlockMode());
    }
}

TEST_F(SpreadTest, ColoursAndLocksGoToTheirCells)
{
    Layout(3, "a\tb\tc");
    AddRows(3);
    spread.SetForeColor(1, 2, 1);
    spread.SetBackColor(2, 3, 2);
    spread.SetLockCell(true);
    spread.SetLockCell(false, 2, 1, 3, 2);
    spread.SetLockCell(true, 3, -1, 3, -1);
    EXPECT_FALSE(grid.BlockMode());
    QString styles;
    for (int row = 1; row <= 3; ++row) {
        for (int column = 1; column <= 3; ++column) {
            const CellStyle &style = grid.Model().Style(column, row);
            for (const int part : {int(style.foreColor.value_or(0)),
                                   int(style.backColor.value_or(0)), int(style.isLocked)})
                styles += QString::number(part);
            styles += ' ';
        }
    }
    EXPECT_EQ(styles, "001 000 001 101 000 001 001 021 001 ");
}

TEST_F(SpreadTest, CopyItemInsertsTheActiveRowBelowItself)
{
    Layout(2, "a\tb");
    spread.CopyItem();
    EXPECT_EQ(boxes.TakeTexts(), Texts{"行指定エラー"});
    AddRows(3);
    spread.SetForeColor(qRgb(9, 9, 9), 2, 1);
    spread.ActiveCell(2, 2);
    spread.CopyItem();
    EXPECT_EQ(Cells(), "a1,b1/a2,b2/a2,b2/a3,b3");
    EXPECT_EQ(spread.ItemCount(), 4);
    EXPECT_EQ(grid.ActiveRow(), 3);
    EXPECT_EQ(grid.ActiveColumn(), 2);
    EXPECT_EQ(grid.Model().Style(1, 3).foreColor, qRgb(9, 9, 9));
    EXPECT_FALSE(grid.Model().Style(1, 4).foreColor);
}

TEST_F(SpreadTest, WhatLiesOutsideIsLeftOut)
{
    using enum SpreadGrid::Action;
    const auto block = [&](int column1, int row1, int column2, int row2) {
        grid.SetBlock(column1, row1, column2, row2);
        grid.SetBlockMode(true);
    };
    Refill();
    for (const auto &[column, row] : {std::pair{1, 99}, {99, 1}, {0, 1}, {1, -1}, {3, 0}}) {
        grid.SetCurrentCell(column, row);
        grid.SetText("x");
        EXPECT_EQ(grid.Text(), "");
        grid.SetForeColor(1);
        grid.SetComboEntries({"x"});
        grid.SetComboIndex(0);
        EXPECT_FALSE(grid.IsLocked(column, row));
        for (const auto action : {ActivateCell, DeleteRows, InsertRow, ClearText})
            grid.Perform(action);
    }
    EXPECT_EQ(Cells(), "a1,b1/a2,b2/a3,b3");
    const std::pair<std::function<void()>, const char *> cases[] = {
        {[&] { grid.SetCurrentCell(1, 2), grid.SetText("x\ty\r\nz"); }, // a tab ends no cell
         "a1,b1/x y\r\nz,b2/a3,b3"},
        {[&] { block(1, 3, 9, 9), grid.SetClip("x\ty\tz\r\np\tq"); }, "a1,b1/a2,b2/x,y"},
        {[&] { block(1, 4, 2, 9), grid.SetClip("x"), grid.Perform(ClearText); },
         "a1,b1/a2,b2/a3,b3"},
        {[&] { block(2, 2, 9, 9), grid.Perform(ClearText); }, "a1,b1/a2,/a3,"},
        {[&] { block(1, 2, 2, 9), grid.Perform(DeleteRows); }, "a1,b1/,/,"},
        {[&] { block(1, 1, 2, 3), grid.SetDestination(2, 2), grid.Perform(CopyBlock); },
         "a1,b1/a2,a1/a3,a2"},
        {[&] { block(1, 2, 2, 2), grid.SetDestination(0, 0), grid.Perform(CopyBlock); },
         "a1,b1/a2,b2/a3,b3"},
    };
    for (const auto &[act, shown] : cases) {
        Refill();
        act();
        grid.SetBlockMode(false);
        EXPECT_EQ(Cells(), shown);
    }
}

TEST_F(SpreadTest, RedrawOffTellsTheViewsInOnePiece)
{
    Refill();
    QSignalSpy inserted(&grid.Model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&grid.Model(), &QAbstractItemModel::dataChanged);
    grid.SetRedraw(false);
    grid.SetRowCount(5);
    grid.SetRowCount(6);
    for (const int row : {5, 3, 6})
        grid.Model().SetText(1, row, "new");
    EXPECT_EQ(inserted.count() + changed.count(), 0);
    grid.SetRedraw(true);
    grid.SetRedraw(true); // has nothing left to tell
    ASSERT_EQ(inserted.count() + changed.count(), 2);
    EXPECT_EQ(inserted[0].mid(1), (QVariantList{3, 5}));
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 2);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 5);
}

TEST_F(SpreadTest, RowsComeAndGoWhileRedrawIsOff)
{
    SpreadModel &model = grid.Model();
    const std::pair<std::function<void()>, const char *> cases[] = {
        {[&] { grid.SetRowCount(4), model.InsertRow(2); }, "a1,b1/,/a2,b2/a3,b3"},
        {[&] { grid.SetRowCount(4), model.InsertRow(4); }, "a1,b1/a2,b2/a3,b3/,"},
        {[&] { grid.SetRowCount(6), model.SetText(1, 5, "a5"), model.InsertRow(5); },
         "a1,b1/a2,b2/a3,b3/,/,/a5,"},
        {[&] { model.DeleteRows(2, 2), grid.SetRowCount(2); }, "a1,b1/a3,b3"},
        {[&] { grid.SetRowCount(5), model.DeleteRows(1, 4), grid.SetRowCount(1); }, ","},
        {[&] { model.SetText(1, 3, "x"), grid.SetRowCount(1); }, "a1,b1"},
    };
    for (const auto &[act, shown] : cases) {
        Refill();
        grid.SetRedraw(false);
        act();
        grid.SetRedraw(true);
        EXPECT_EQ(Cells(), shown);
        EXPECT_EQ(grid.model()->rowCount(), grid.RowCount()) << shown;
    }
}
