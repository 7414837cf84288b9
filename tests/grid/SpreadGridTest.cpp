#include "grid/SpreadGrid.h"

#include "support/QtPrinters.h"

#include <QSignalSpy>
#include <functional>
#include <gtest/gtest.h>

namespace {

/// A grid of 3 rows and 2 columns.
class SpreadGridTest : public testing::Test
{
protected:
    SpreadGridTest()
    {
        grid.SetColumnCount(2);
        Fill();
    }

    void Fill()
    {
        grid.SetRowCount(0);
        grid.SetRowCount(3);
        for (int row = 1; row <= 3; ++row)
            grid.Model().SetRowText(row, QString("a%1\tb%1").arg(row));
    }

    /// What the views know of: cells joined by ",", rows by "/".
    QString Shown() const
    {
        QStringList rows;
        for (int row = 0; row < grid.model()->rowCount(); ++row)
            rows += grid.model()->index(row, 0).data().toString() + ','
                    + grid.model()->index(row, 1).data().toString();
        return rows.join('/');
    }

    SpreadGrid grid;
};

} // namespace

TEST_F(SpreadGridTest, WhatLiesOutsideIsLeftOut)
{
    using enum SpreadGrid::Action;
    const auto block = [&](int column1, int row1, int column2, int row2) {
        grid.SetBlock(column1, row1, column2, row2);
        grid.SetBlockMode(true);
    };
    const std::tuple<const char *, std::function<void()>, const char *> cases[] = {
        {"cells",
         [&] {
             for (const auto &[column, row] :
                  {std::pair{1, 99}, {99, 1}, {0, 1}, {1, -1}, {3, 0}}) {
                 grid.SetCurrentCell(column, row);
                 grid.SetText("x");
                 EXPECT_EQ(grid.Text(), "");
                 grid.SetForeColor(1);
                 grid.SetLock(true);
                 grid.SetComboEntries({"x"});
                 grid.SetComboIndex(0);
                 EXPECT_EQ(grid.ComboIndex(), -1);
                 EXPECT_FALSE(grid.IsLocked(column, row));
                 for (const auto action : {ActivateCell, DeleteRows, InsertRow, ClearText})
                     grid.Perform(action);
             }
         },
         "a1,b1/a2,b2/a3,b3"},
        {"a tab, which ends no cell", [&] { grid.SetCurrentCell(1, 2), grid.SetText("x\ty\r\nz"); },
         "a1,b1/x y\nz,b2/a3,b3"},
        {"a block's clip", [&] { block(1, 3, 9, 9), grid.SetClip("x\ty\tz\r\np\tq"); },
         "a1,b1/a2,b2/x,y"},
        {"a block without a cell",
         [&] { block(1, 4, 2, 9), grid.SetClip("x"), grid.Perform(ClearText); },
         "a1,b1/a2,b2/a3,b3"},
        {"a block's texts", [&] { block(2, 2, 9, 9), grid.Perform(ClearText); }, "a1,b1/a2,/a3,"},
        {"a block's rows", [&] { block(1, 2, 2, 9), grid.Perform(DeleteRows); }, "a1,b1/,/,"},
        {"a copy", [&] { block(1, 1, 2, 3), grid.SetDestination(2, 2), grid.Perform(CopyBlock); },
         "a1,b1/a2,a1/a3,a2"},
        {"a copy to before the first",
         [&] { block(1, 2, 2, 2), grid.SetDestination(0, 0), grid.Perform(CopyBlock); },
         "a1,b1/a2,b2/a3,b3"},
    };
    for (const auto &[what, act, shown] : cases) {
        Fill();
        act();
        grid.SetBlockMode(false);
        EXPECT_EQ(Shown(), shown) << what;
    }
}

TEST_F(SpreadGridTest, RedrawOffTellsTheViewsInOnePiece)
{
    QSignalSpy inserted(&grid.Model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&grid.Model(), &QAbstractItemModel::dataChanged);
    grid.SetRedraw(false);
    for (const int count : {4, 5, 6})
        grid.SetRowCount(count);
    for (const int row : {5, 3, 6})
        grid.Model().SetText(1, row, "new");
    EXPECT_EQ(inserted.count() + changed.count(), 0);
    EXPECT_EQ(grid.model()->rowCount(), 3) << "the views know of none yet";
    EXPECT_EQ(grid.Model().Text(1, 6), "new") << "the program does";
    for (int time = 0; time < 2; ++time) { // the second has nothing left to tell
        grid.SetRedraw(true);
        ASSERT_EQ(inserted.count(), 1);
        ASSERT_EQ(changed.count(), 1);
    }
    EXPECT_EQ(inserted[0].mid(1), (QVariantList{3, 5}));
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 2);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 5);
}

TEST_F(SpreadGridTest, RowsComeAndGoWhileRedrawIsOff)
{
    SpreadModel &model = grid.Model();
    const std::tuple<const char *, std::function<void()>, const char *> cases[] = {
        {"inserted above", [&] { grid.SetRowCount(4), model.InsertRow(2); }, "a1,b1/,/a2,b2/a3,b3"},
        {"inserted behind", [&] { grid.SetRowCount(4), model.InsertRow(4); },
         "a1,b1/a2,b2/a3,b3/,"},
        {"inserted among new ones",
         [&] { grid.SetRowCount(6), model.SetText(1, 5, "a5"), model.InsertRow(5); },
         "a1,b1/a2,b2/a3,b3/,/,/a5,"},
        {"removed", [&] { model.DeleteRows(2, 2), grid.SetRowCount(2); }, "a1,b1/a3,b3"},
        {"added and removed",
         [&] { grid.SetRowCount(5), model.DeleteRows(1, 4), grid.SetRowCount(1); }, ","},
        {"changed, then gone", [&] { model.SetText(1, 3, "x"), grid.SetRowCount(1); }, "a1,b1"},
    };
    for (const auto &[what, act, shown] : cases) {
        Fill();
        grid.SetRedraw(false);
        act();
        grid.SetRedraw(true);
        EXPECT_EQ(Shown(), shown) << what;
        EXPECT_EQ(grid.model()->rowCount(), grid.RowCount()) << what;
    }
}
