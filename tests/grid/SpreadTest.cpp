#include "grid/SpreadX.h"

#include "grid/SpreadGrid.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"

#include <QSignalSpy>
#include <functional>
#include <gtest/gtest.h>

namespace {

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
        {[&] { spread.RemoveItem(5), spread.AddItem("x", 6); }, "a1,b1/u,/a2,b2/z,"},
        {[&] { spread.UpdateItem("1\r2\tb", 1); }, "1\r2,b/u,/a2,b2/z,"},
        {[&] { spread.SetAllItemsIntoRow(2, "p\tq\tr"); }, "1\r2,b/p,q/a2,b2/z,"},
    };
    for (const auto &[operation, cells] : steps) {
        operation();
        EXPECT_EQ(Cells(), cells);
        EXPECT_EQ(spread.ItemCount(), grid.RowCount()) << cells;
    }
    EXPECT_EQ(spread.GetAllItemsFromRow(1), "1\r2\tb");
    EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"挿入行指定エラー"});
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
        Layout(2, "a\tb");
        spread.Clear(-1, -1, -1, -1);
        AddRows(3);
        grid.SetRedraw(false);
        act();
        QSignalSpy told(&model, &QAbstractItemModel::dataChanged);
        grid.SetRedraw(true);
        EXPECT_LE(told.count(), 1) << "in one piece";
        EXPECT_EQ(Cells(), shown);
        EXPECT_EQ(grid.model()->rowCount(), grid.RowCount()) << shown;
    }
}
