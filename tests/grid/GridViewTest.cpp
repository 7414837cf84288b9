#include "grid/GridView.h"

#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/WindowHands.h"

#include <QClipboard>
#include <QStandardItemModel>
#include <functional>

namespace {

constexpr int Quantity = 2; ///< the columns that can be typed into
constexpr int Date = 3;
constexpr int Locked = 4; ///< a row

/// Pastes into the cell, over all that stands in it.
void PasteOver(const char *text)
{
    QApplication::clipboard()->setText(text);
    Key(Qt::Key_F2);
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
}

/// A shown grid of 12 rows and 4 columns.
class GridViewTest : public testing::Test
{
protected:
    GridViewTest()
        : cells(12, 4)
    {
        for (int row = 1; row <= 12; ++row) {
            const QString texts[] = {QString("r%1").arg(row), "1234.5", "260520", "x"};
            for (int column = 1; column <= 4; ++column) {
                auto *cell = new QStandardItem(texts[column - 1]);
                const bool isTyped = column == Quantity || column == Date;
                cell->setEditable(isTyped && row != Locked);
                cells.setItem(row - 1, column - 1, cell);
            }
        }
        grid.setModel(&cells);
        grid.SetTextLines(1);
        for (int column = 1; column <= 4; ++column)
            grid.SetColumnWidth(column, 90);
        grid.SetColumnInput(Quantity, std::make_unique<QuantityCellInput>());
        grid.SetColumnInput(Date, std::make_unique<DateCellInput>());
        grid.resize(700, 600);
        grid.show();
        grid.activateWindow();
        grid.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&grid));
    }

    void Click(int column, int row, Qt::KeyboardModifiers keys = {})
    {
        ClickCell(grid, column, row, keys);
    }
    void ClickHeading(int row, Qt::KeyboardModifiers keys = {}) { ClickRow(grid, row, keys); }
    void Drag(int fromRow, int toRow)
    {
        QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, CellPoint(grid, 1, fromRow));
        QTest::mouseMove(grid.viewport(), CellPoint(grid, 2, toRow));
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, CellPoint(grid, 2, toRow));
    }

    /// The selected rows, then the active cell.
    QString Cursor() const
    {
        QString rows;
        for (const auto &[first, last] : grid.SelectedRowRanges())
            rows += (first == last ? QString::number(first) : QString("%1-%2").arg(first).arg(last))
                    + ' ';
        return rows + QString("at %1,%2").arg(grid.ActiveColumn()).arg(grid.ActiveRow());
    }
    QString Text(int column, int row) const { return cells.item(row - 1, column - 1)->text(); }
    QLineEdit &Editor() const { return *grid.findChild<QLineEdit *>("cellEditor"); }

    ScriptedBoxes boxes;
    QStandardItemModel cells;
    GridView grid;
};

} // namespace

TEST_F(GridViewTest, WholeRowsAreSelected)
{
    const auto control = Qt::ControlModifier;
    const auto shift = Qt::ShiftModifier;
    const std::tuple<const char *, std::function<void()>, const char *> cases[] = {
        {"drag", [&] { Drag(2, 6); }, "2-6 at 2,6"},
        {"Ctrl takes away", [&] { Drag(2, 3), Click(2, 3, control); }, "2 at 2,3"},
        {"neighbours are one range",
         [&] { Click(1, 2), Click(1, 3, control), Click(3, 4, control); }, "2-4 at 3,4"},
        {"headings", [&] { ClickHeading(3), ClickHeading(6, shift); }, "3-6 at 1,6"},
        {"an arrow", [&] { Click(1, 3), Key(Qt::Key_Down); }, "4 at 1,4"},
        {"Shift+blank", [&] { Click(1, 3), Key(Qt::Key_Return), Key(Qt::Key_Space, shift); },
         "4 at 1,4"},
        {"Shift from where Enter has led",
         [&] { Click(1, 3), Key(Qt::Key_Return), Key(Qt::Key_Return), Key(Qt::Key_Down, shift); },
         "5-6 at 1,6"},
        {"Shift again from there",
         [&] { Key(Qt::Key_Up, shift), Key(Qt::Key_Up, shift), Key(Qt::Key_Up, shift); },
         "3-5 at 1,3"},
        {"Shift and a click from where the program has led",
         [&] { Click(1, 3), grid.Activate(2, 8), Click(1, 6, shift); }, "6-8 at 1,6"},
        {"Shift+blank, then Shift",
         [&] {
             Click(1, 2), grid.Activate(1, 5), Key(Qt::Key_Space, shift);
             Key(Qt::Key_Down, shift), Key(Qt::Key_Down, shift);
         },
         "5-7 at 1,7"},
        {"Enter leaves it", [&] { Click(1, 3), Key(Qt::Key_Return); }, "3 at 1,4"},
        {"a letter looks for nothing", [&] { Click(1, 3), Keys("r"); }, "3 at 1,3"},
        {"the program",
         [&] {
             grid.SetSelectedRows({{5, 6}, {8, 8}});
         },
         "5-6 8 at 1,3"},
        {"the program's frame", [&] { Click(1, 3), grid.Activate(2, 9); }, "3 at 2,9"},
        {"a row inserted above", [&] { Drag(2, 3), cells.insertRow(1); }, "3-4 at 2,4"},
        {"a row removed", [&] { Drag(2, 4), cells.removeRow(2); }, "2-3 at 2,3"},
    };
    for (const auto &[what, act, cursor] : cases) {
        grid.clearSelection();
        act();
        EXPECT_EQ(Cursor(), cursor) << what;
    }
}

TEST_F(GridViewTest, WhatStartsAnEditAndWhatItBeginsWith)
{
    // The column and row, what is done there, what stands in the editor then; null: no edit.
    const std::tuple<int, int, std::function<void()>, const char *> cases[] = {
        {Quantity, 1, [] { Key(Qt::Key_F2); }, "1234.5"},
        {Quantity, 1, [] { Keys("7"); }, "7"},
        {Quantity, 1, [] { Keys(".5"); }, "0.5"},
        {Quantity, 1, [] { Keys("5."); }, "5."},
        {Date, 1, [] { Keys("."); }, "260520"},
        {Quantity, 1, [] { Keys("1.2345"); }, "1.234"},
        {Quantity, 1, [] { PasteOver("1,234.5"); }, "1234.5"},
        {Date, 1, [] { Keys("2606011"); }, "260601"},
        {Date, 1, [] { PasteOver(" 2026/12/08\n"); }, "261208"},
        {Date, 1, [] { PasteOver("26/13/08"); }, "260520"},
        {Quantity, Locked, [] { Keys("7."), Key(Qt::Key_F2); }, nullptr},
        {1, 1, [] { Keys("7"), Key(Qt::Key_F2); }, nullptr},
        {Quantity, 3,
         [&] {
             QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, CellPoint(grid, Quantity, 3));
         },
         nullptr},
    };
    for (const auto &[column, row, act, text] : cases) {
        const std::string what = text ? text : "no edit";
        Click(column, row);
        const QString before = Text(column, row);
        act();
        ASSERT_EQ(grid.IsEditing(), text != nullptr) << what;
        if (text) {
            EXPECT_EQ(Editor().text(), text) << what;
            EXPECT_FALSE(Editor().testAttribute(Qt::WA_InputMethodEnabled)) << what;
        }
        grid.clearSelection();
        Key(Qt::Key_Escape);
        EXPECT_FALSE(grid.IsEditing()) << what;
        EXPECT_EQ(Text(column, row), before) << what;
        EXPECT_TRUE(grid.SelectedRowRanges().empty()) << "an edit given up is no change";
    }
}

TEST_F(GridViewTest, WhatEndsAnEdit)
{
    // The selection is left as it is, but by a click.
    const std::tuple<const char *, std::function<void()>, const char *> cases[] = {
        {"Enter", [] { Key(Qt::Key_Return); }, "7-8 at 2,3"},
        {"Shift+Enter", [] { Key(Qt::Key_Return, Qt::ShiftModifier); }, "7-8 at 2,1"},
        {"Shift+Tab", [] { Key(Qt::Key_Backtab, Qt::ShiftModifier); }, "7-8 at 3,1"},
        {"over the locked row",
         [] { Key(Qt::Key_Return), Keys("8"), Key(Qt::Key_Tab), Keys("260601"), Key(Qt::Key_Tab); },
         "7-8 at 2,5"},
        {"another cell", [&] { Click(1, 6); }, "6 at 1,6"},
        {"a command", [&] { EXPECT_TRUE(grid.FinishEdit()); }, "7-8 at 2,2"},
    };
    for (const auto &[what, act, cursor] : cases) {
        grid.SetSelectedRows({{7, 8}});
        grid.Activate(Quantity, 2);
        Keys("8.5");
        act();
        EXPECT_FALSE(grid.IsEditing()) << what;
        EXPECT_EQ(Text(Quantity, 2), "8.5") << what;
        EXPECT_EQ(Cursor(), cursor) << what;
        EXPECT_EQ(QApplication::focusWidget(), &grid) << what;
        cells.item(1, Quantity - 1)->setText("1234.5");
    }
}

TEST_F(GridViewTest, WhatMayStandInACell)
{
    constexpr auto BadDate = "日付の入力が間違っています\r";
    constexpr auto BadNumber = "数値の入力が間違っています\r";
    // Null: it stands.
    const std::tuple<int, const char *, const char *> cases[] = {
        {Date, "280229", nullptr},   {Date, "26/05/02", nullptr}, // as it is shown
        {Date, "260229", BadDate},   {Date, "26052", BadDate},
        {Date, "26 1 8", BadDate},   {Date, "2605/2", BadDate},
        {Quantity, "0.5", nullptr},  {Quantity, "123456789.125", nullptr},
        {Quantity, "-5", BadNumber}, {Quantity, "5.", BadNumber},
        {Quantity, ".5", BadNumber}, {Quantity, "1234567890", BadNumber},
    };
    for (const auto &[column, text, told] : cases) {
        Click(column, 2);
        const QString before = Text(column, 2);
        Key(Qt::Key_F2);
        Editor().setText(text);
        Key(Qt::Key_Return);
        EXPECT_EQ(boxes.TakeTexts(), told ? std::vector<QString>{told} : std::vector<QString>())
            << text;
        EXPECT_EQ(grid.IsEditing(), told != nullptr) << text;
        grid.CancelEdit();
        EXPECT_EQ(Text(column, 2), told ? before : text);
    }
}

TEST_F(GridViewTest, AWrongTextKeepsTheCellInEditHoweverItIsLeft)
{
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"Tab", [] { Key(Qt::Key_Tab); }},
        {"another cell", [&] { Click(1, 6); }},
        {"a command", [&] { EXPECT_FALSE(grid.FinishEdit()); }},
    };
    for (const auto &[what, leave] : ways) {
        Click(Date, 2);
        Keys("260230");
        leave();
        QCoreApplication::processEvents(); // whatever the leaving has queued
        EXPECT_EQ(boxes.TakeTexts().size(), 1u) << what;
        EXPECT_EQ(Cursor(), "2 at 3,2") << what;
        EXPECT_EQ(Focus(), "cellEditor") << what;
        Keys("260601"); // replaces the wrong one
        Key(Qt::Key_Return);
        EXPECT_EQ(Text(Date, 2), "260601") << what;
        cells.item(1, Date - 1)->setText("260520");
    }
}

TEST_F(GridViewTest, RowsGoToTheClipboard)
{
    cells.item(1, 0)->setText("two\nlines \"a\"");
    cells.setHorizontalHeaderLabels({"order\nname", "quantity", "date", "x"});
    const QString headings = "\"order\nname\"\tquantity\tdate\tx\n";
    const QString cellTexts = "\t1234.5\t260520\tx\n";
    const std::tuple<const char *, std::function<void()>, QString> cases[] = {
        {"the active cell", [&] { Click(3, 1), grid.clearSelection(); }, "260520"},
        {"rows", [&] { Click(1, 3), Click(1, 5, Qt::ControlModifier); },
         headings + "r3" + cellTexts + "r5" + cellTexts},
        {"several lines in a cell", [&] { Click(1, 2); },
         headings + "\"two\nlines \"\"a\"\"\"" + cellTexts},
    };
    for (const auto &[what, select, text] : cases) {
        grid.clearSelection();
        select();
        Key(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text(), text) << what;
    }
}
