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

TEST_F(SpreadTest, LayoutNamesColumnsAndLines)
{
    const std::pair<const char *, QStringList> cases[] = {
        {"a;b\tc", {"a;b", "c", ""}}, // ";" counts behind the last tab only
        {" a \t b\tc \td", {"a", "b", "c"}},
        {"a\tb\rd", {"a\rd", "b\r", "\r"}},
        {"a\rb\rc\rd", {"a\rb\rc", "\r\r", "\r\r"}},
    };
    for (const auto &[layout, headings] : cases) {
        Layout(3, layout);
        for (int column = 1; column <= 3; ++column)
            EXPECT_EQ(grid.Model().Heading(column), headings[column - 1]) << layout;
    }
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
    EXPECT_EQ(item("色", 1), "before");
    EXPECT_EQ(item("a", 3), "before");
    EXPECT_EQ(boxes.TakeTexts(), (Texts{UnknownItem, "行指定エラー"}));
    EXPECT_EQ(Cells(), "1\rx\r3,B\ry/\r\rz,");
}

TEST_F(SpreadTest, MinLinesKeepsGridRows)
{
    Layout(2, "a\tb");
    const std::tuple<std::function<void()>, int, const char *> steps[] = {
        {[&] { spread.SetMinLines(3), spread.SetMinLines(-1); }, 0, ",/,/,"},
        {[&] { AddRows(5); }, 5, "a1,b1/a2,b2/a3,b3/a4,b4/a5,b5"},
        {[&] { spread.SetMinLines(4); }, 5, "a1,b1/a2,b2/a3,b3/a4,b4/a5,b5"},
        {[&] { spread.RemoveItem(1); }, 4, "a2,b2/a3,b3/a4,b4/a5,b5"},
        {[&] { spread.RemoveItem(2); }, 3, "a2,b2/a4,b4/a5,b5/,"}, // the empty row comes last
        {[&] { spread.Clear(2, 2, 3, 2); }, 0, "a2,b2/a4,/a5,/,"},
        {[&] { spread.Clear(-1, -1, -1, -1); }, 0, ",/,/,/,"},
        {[&] { spread.RemoveItem(1); }, 0, ",/,/,/,"},
        {[&] { spread.SetMinLines(0); }, 0, ""},
        {[&] { AddRows(1); }, 1, "a1,b1"},
    };
    for (const auto &[operation, items, cells] : steps) {
        operation();
        EXPECT_EQ(Cells(), cells);
        EXPECT_EQ(spread.ItemCount(), items) << cells;
        EXPECT_TRUE(grid.Redraw()) << cells;
    }
}

TEST_F(SpreadTest, WhatLiesOutsideIsLeftOut)
{
    using enum SpreadGrid::Action;
    Refill();
    for (const auto &[column, row] : {std::pair{1, 99}, {99, 1}, {0, 1}, {1, -1}, {3, 0}}) {
        grid.SetCurrentCell(column, row);
        grid.SetText("x");
        EXPECT_EQ(grid.Text(), "");
        for (const auto action : {ActivateCell, DeleteRows, InsertRow, ClearText})
            grid.Perform(action);
    }
    EXPECT_EQ(Cells(), "a1,b1/a2,b2/a3,b3");
    grid.SetBlock(2, 2, 9, 9);
    grid.SetBlockMode(true);
    grid.Perform(ClearText);
    EXPECT_EQ(Cells(), "a1,b1/a2,/a3,");
    grid.SetBlock(1, 1, 2, 3);
    grid.SetDestination(2, 3);
    grid.Perform(CopyBlock);
    EXPECT_EQ(Cells(), "a1,b1/a2,/a3,a1");
    grid.SetCurrentCell(1, 2);
    grid.SetText("x\ty"); // a tab ends no cell
    EXPECT_EQ(Cells(), "a1,b1/x y,/a3,a1");
}

TEST_F(SpreadTest, RowsComeAndGoWhileRedrawIsOff)
{
    SpreadModel &model = grid.Model();
    const std::pair<std::function<void()>, const char *> cases[] = {
        {[&] { grid.SetRowCount(4), model.InsertRow(2); }, "a1,b1/,/a2,b2/a3,b3"},
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
        QSignalSpy told(&model, &QAbstractItemModel::dataChanged);
        grid.SetRedraw(true);
        EXPECT_LE(told.count(), 1) << "in one piece";
        EXPECT_EQ(Cells(), shown);
        EXPECT_EQ(grid.model()->rowCount(), grid.RowCount()) << shown;
    }
}
