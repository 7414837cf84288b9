#include "grid/SpreadGrid.h"

#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/WindowHands.h"

#include <QClipboard>
#include <QHeaderView>
#include <QSignalSpy>
#include <functional>
#include <set>

namespace {

constexpr int Quantity = 2; ///< the columns that can be typed into
constexpr int Date = 3;
constexpr int Hidden = 5;

/// A shown grid of 12 rows and 5 columns; row 4 is locked.
class SpreadGridTest : public testing::Test
{
protected:
    SpreadGridTest()
    {
        grid.SetColumnCount(5);
        grid.SetRowCount(12);
        grid.SetTextLines(1);
        for (int column = 1; column <= 5; ++column)
            grid.SetColumnLook(column, column == Hidden ? 0 : 90, Qt::AlignLeft);
        grid.SetColumnInput(Quantity, std::make_unique<QuantityCellInput>());
        grid.SetColumnInput(Date, std::make_unique<DateCellInput>());
        for (int row = 1; row <= 12; ++row)
            grid.Model().SetRowText(row, QString("r%1\t1,234.500\t26/05/20\tx\thidden").arg(row));
        grid.SetBlock(1, 4, 5, 4);
        grid.SetBlockMode(true);
        grid.SetLock(true);
        grid.SetBlockMode(false);
        QObject::connect(&grid, &SpreadGrid::CellChanged, [this](int column, int row) {
            changes += QString("%1,%2").arg(column).arg(row);
        });
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

    QString Selected() const
    {
        QStringList ranges;
        for (const auto &[first, last] : grid.SelectedRowRanges())
            ranges
                += first == last ? QString::number(first) : QString("%1-%2").arg(first).arg(last);
        return ranges.join(' ');
    }
    QString Active() const
    {
        return QString("%1,%2").arg(grid.ActiveColumn()).arg(grid.ActiveRow());
    }
    QString Text(int column, int row) const { return grid.Model().Text(column, row); }

    ScriptedBoxes boxes;
    SpreadGrid grid;
    QStringList changes;
};

} // namespace

TEST_F(SpreadGridTest, RowsTouchedByTheSelection)
{
    const struct
    {
        const char *what;
        std::function<void()> act;
        const char *rows;
        const char *active;
    } cases[] = {
        {"a second click moves it", [&] { Click(1, 3), Click(2, 5); }, "5", "2,5"},
        {"drag", [&] { Drag(2, 6); }, "2-6", "2,6"},
        {"Ctrl", [&] { Click(1, 2), Click(2, 5, Qt::ControlModifier); }, "2 5", "2,5"},
        {"Ctrl takes away",
         [&] { Drag(2, 3), Click(1, 3, Qt::ControlModifier), Click(2, 3, Qt::ControlModifier); },
         "2", "2,3"},
        {"neighbours are one range",
         [&] { Click(1, 2), Click(1, 3, Qt::ControlModifier), Click(3, 4, Qt::ControlModifier); },
         "2-4", "3,4"},
        {"headings", [&] { ClickHeading(3), ClickHeading(6, Qt::ShiftModifier); }, "3-6", "1,6"},
        {"Ctrl+A", [&] { Click(1, 3), Key(Qt::Key_A, Qt::ControlModifier); }, "1-12", "1,3"},
        {"Shift+arrow", [&] { Click(1, 3), Key(Qt::Key_Down, Qt::ShiftModifier); }, "3-4", "1,4"},
        {"Enter leaves it", [&] { Click(1, 3), Key(Qt::Key_Return); }, "3", "1,4"},
        {"Shift+Enter", [&] { Click(1, 3), Key(Qt::Key_Return, Qt::ShiftModifier); }, "3", "1,2"},
        {"Enter in the last row", [&] { Click(1, 12), Key(Qt::Key_Return); }, "12", "1,12"},
        {"a letter looks for nothing", [&] { Click(1, 3), Keys("r"); }, "3", "1,3"},
        {"a row inserted above",
         [&] { Drag(2, 3), grid.SetRowCount(13), grid.Model().InsertRow(2); }, "3-4", "2,4"},
        {"a row removed", [&] { Drag(2, 4), grid.Model().DeleteRows(3, 3); }, "2-3", "2,3"},
    };
    for (const auto &[what, act, rows, active] : cases) {
        grid.clearSelection();
        act();
        EXPECT_EQ(Selected(), rows) << what;
        EXPECT_EQ(Active(), active) << what;
        for (int row = 1; row <= 12; ++row)
            EXPECT_EQ(grid.IsRowSelected(row),
                      grid.selectionModel()->rowIntersectsSelection(row - 1, {}))
                << what << row;
        grid.SetRowCount(12);
    }
}

TEST_F(SpreadGridTest, WhatStartsAnEditAndWhatItBeginsWith)
{
    const struct
    {
        const char *what;
        int column, row;
        std::function<void()> act;
        const char *editor; ///< null: no edit
    } cases[] = {
        {"F2", Quantity, 1, [] { Key(Qt::Key_F2); }, "1234.5"},
        {"F2", Date, 1, [] { Key(Qt::Key_F2); }, "260520"},
        {"a digit replaces", Quantity, 1, [] { Keys("7"); }, "7"},
        {"the point and more", Quantity, 1, [] { Keys(".5"); }, "0.5"},
        {"the point within an edit", Quantity, 1, [] { Keys("5."); }, "5."},
        {"no point in a date", Date, 1, [] { Keys("."); }, "260520"},
        {"four decimals", Quantity, 1, [] { Keys("1.2345"); }, "1.234"},
        {"seven digits", Date, 1, [] { Keys("2606011"); }, "260601"},
        {"a locked row", Quantity, 4, [] { Keys("7"); }, nullptr},
        {"the point in a locked row", Quantity, 4, [] { Keys("."); }, nullptr},
        {"another column", 1, 1, [] { Keys("7"), Key(Qt::Key_F2); }, nullptr},
    };
    for (const auto &[what, column, row, act, text] : cases) {
        Click(column, row);
        act();
        ASSERT_EQ(grid.IsEditing(), text != nullptr) << what;
        if (!text)
            continue;
        EXPECT_EQ(grid.findChild<QLineEdit *>("cellEditor")->text(), text) << what;
        Key(Qt::Key_Escape);
        EXPECT_FALSE(grid.IsEditing()) << what;
        EXPECT_EQ(Text(column, row), column == Date ? "26/05/20" : "1,234.500") << what;
    }
    EXPECT_TRUE(changes.isEmpty());
}

TEST_F(SpreadGridTest, WhatEndsAnEdit)
{
    const struct
    {
        const char *what;
        std::function<void()> act;
        const char *active;
        const char *selected;
    } cases[] = {
        {"Enter", [] { Key(Qt::Key_Return); }, "2,3", "2"},
        {"Shift+Enter", [] { Key(Qt::Key_Return, Qt::ShiftModifier); }, "2,1", "2"},
        {"Down", [] { Key(Qt::Key_Down); }, "2,3", "2"},
        {"Up", [] { Key(Qt::Key_Up); }, "2,1", "2"},
        {"Tab", [] { Key(Qt::Key_Tab); }, "3,2", "2"},
        {"Shift+Tab", [] { Key(Qt::Key_Backtab, Qt::ShiftModifier); }, "3,1", "2"},
        {"Tab twice, past the row's end",
         [] { Key(Qt::Key_Tab), Keys("260601"), Key(Qt::Key_Tab); }, "2,3", "2"},
        {"another cell", [&] { Click(1, 6); }, "1,6", "6"},
        {"a heading", [&] { ClickHeading(7); }, "1,7", "7"},
        {"a command", [&] { EXPECT_TRUE(grid.FinishEdit()); }, "2,2", "2"},
    };
    for (const auto &[what, act, active, selected] : cases) {
        Click(Quantity, 2);
        Keys("8.5");
        act();
        EXPECT_FALSE(grid.IsEditing()) << what;
        EXPECT_EQ(Text(Quantity, 2), "8.500") << what;
        EXPECT_EQ(Active(), active) << what;
        EXPECT_EQ(Selected(), selected) << what;
        EXPECT_EQ(changes.value(0), "2,2") << what;
        EXPECT_EQ(QApplication::focusWidget(), &grid) << what;
        changes.clear();
        grid.Model().SetText(Quantity, 2, "1,234.500");
    }
}

TEST_F(SpreadGridTest, AWrongTextKeepsTheCellInEditHoweverItIsLeft)
{
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"Enter", [] { Key(Qt::Key_Return); }},
        {"Tab", [] { Key(Qt::Key_Tab); }},
        {"another cell", [&] { Click(1, 6); }},
        {"a heading", [&] { ClickHeading(7); }},
        {"a command", [&] { EXPECT_FALSE(grid.FinishEdit()); }},
    };
    for (const auto &[what, leave] : ways) {
        Click(Date, 2);
        Keys("260230");
        leave();
        QTest::qWait(0); // whatever the leaving has queued
        ASSERT_TRUE(grid.IsEditing()) << what;
        EXPECT_EQ(boxes.TakeTexts(), std::vector<QString>{"日付の入力が間違っています\r"}) << what;
        EXPECT_EQ(Active(), "3,2") << what;
        EXPECT_EQ(QApplication::focusWidget()->objectName(), "cellEditor") << what;
        Keys("260601"); // replaces the wrong one
        Key(Qt::Key_Return);
        EXPECT_EQ(Text(Date, 2), "26/06/01") << what;
        grid.Model().SetText(Date, 2, "26/05/20");
    }
}

TEST_F(SpreadGridTest, AnUnchangedTextIsNoChange)
{
    Click(Quantity, 2);
    Keys("1234.5");
    Key(Qt::Key_Return);
    Click(Quantity, 2);
    Key(Qt::Key_F2);
    Key(Qt::Key_Return);
    Click(Date, 2);
    Keys("2");
    Key(Qt::Key_Escape);
    EXPECT_EQ(changes, QStringList());
}

TEST_F(SpreadGridTest, SelectedCellsGoToTheClipboard)
{
    grid.Model().SetText(1, 2, "two\r\nlines \"a\"");
    const struct
    {
        const char *what;
        std::function<void()> select;
        const char *text;
    } cases[] = {
        {"the active cell", [&] { Click(4, 1), grid.clearSelection(); }, "x\n"},
        {"a block", [&] { Drag(3, 4); }, "r3\t1,234.500\nr4\t1,234.500\n"},
        {"a row, without hidden columns", [&] { ClickHeading(3); }, "r3\t1,234.500\t26/05/20\tx\n"},
        {"a row by key", [&] { Click(2, 4), Key(Qt::Key_Space, Qt::ShiftModifier); },
         "r4\t1,234.500\t26/05/20\tx\n"},
        {"rows apart", [&] { Click(1, 3), Click(1, 5, Qt::ControlModifier); }, "r3\nr5\n"},
        {"cells apart", [&] { Click(1, 3), Click(3, 5, Qt::ControlModifier); },
         "r3\t\t\n\t\t26/05/20\n"},
        {"several lines in a cell", [&] { Click(1, 2); }, "\"two\nlines \"\"a\"\"\"\n"},
    };
    for (const auto &[what, select, text] : cases) {
        grid.clearSelection();
        select();
        Key(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text(), text) << what;
    }
}

TEST_F(SpreadGridTest, ADoubleClickIsOnARow)
{
    QStringList clicks;
    QObject::connect(&grid, &SpreadGrid::CellDoubleClicked,
                     [&](int column, int row) { clicks += QString("%1,%2").arg(column).arg(row); });
    const QPoint cell = CellPoint(grid, Quantity, 3);
    const QPoint belowAll = CellPoint(grid, 1, 12) + QPoint(0, 60);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(grid.viewport(), Qt::RightButton, {}, cell);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, belowAll);
    EXPECT_EQ(clicks.join(' '), "2,3");
    EXPECT_FALSE(grid.IsEditing()) << "a double click opens no cell";
}

TEST_F(SpreadGridTest, RedrawOffTellsTheViewsInOnePiece)
{
    QSignalSpy inserted(&grid.Model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&grid.Model(), &QAbstractItemModel::dataChanged);
    grid.SetRedraw(false);
    for (const int count : {13, 14, 15})
        grid.SetRowCount(count);
    for (const int row : {9, 3, 15})
        grid.Model().SetText(1, row, "new");
    EXPECT_EQ(inserted.count() + changed.count(), 0);
    EXPECT_EQ(grid.model()->rowCount(), 12) << "the views know of none yet";
    EXPECT_EQ(Text(1, 15), "new") << "the program does";
    for (int time = 0; time < 2; ++time) { // the second has nothing left to tell
        grid.SetRedraw(true);
        ASSERT_EQ(inserted.count(), 1);
        ASSERT_EQ(changed.count(), 1);
    }
    EXPECT_EQ(inserted[0].mid(1), (QVariantList{12, 14}));
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 2);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 14);
}

TEST_F(SpreadGridTest, RowsComeAndGoWhileRedrawIsOff)
{
    grid.SetRowCount(3);
    const struct
    {
        const char *what;
        std::function<void()> act;
        const char *rows;
    } cases[] = {
        {"inserted above", [&] { grid.SetRowCount(4), grid.Model().InsertRow(2); }, "r1--r2-r3"},
        {"inserted behind", [&] { grid.SetRowCount(4), grid.Model().InsertRow(4); }, "r1-r2-r3-"},
        {"inserted among new ones",
         [&] {
             grid.SetRowCount(6);
             grid.Model().SetText(1, 5, "r5");
             grid.Model().InsertRow(5);
         },
         "r1-r2-r3---r5"},
        {"removed", [&] { grid.Model().DeleteRows(2, 2), grid.SetRowCount(2); }, "r1-r3"},
        {"added and removed",
         [&] { grid.SetRowCount(5), grid.Model().DeleteRows(1, 4), grid.SetRowCount(1); }, ""},
        {"changed, then gone", [&] { grid.Model().SetText(1, 3, "x"), grid.SetRowCount(1); }, "r1"},
    };
    for (const auto &[what, act, rows] : cases) {
        grid.SetRowCount(0);
        grid.SetRowCount(3);
        for (int row = 1; row <= 3; ++row)
            grid.Model().SetText(1, row, QString("r%1").arg(row));
        grid.SetRedraw(false);
        act();
        grid.SetRedraw(true);
        ASSERT_EQ(grid.model()->rowCount(), grid.RowCount()) << what;
        QStringList shown;
        for (int row = 0; row < grid.model()->rowCount(); ++row)
            shown += grid.model()->index(row, 0).data().toString();
        EXPECT_EQ(shown.join('-'), rows) << what;
    }
}

/// Counts the pictures of a widget.
class PictureCount : public QObject
{
public:
    explicit PictureCount(QWidget *widget) { widget->installEventFilter(this); }

    int count = 0;

private:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

TEST_F(SpreadGridTest, ALongListTakesOnePictureAndItsNumbersFit)
{
    grid.SetRedraw(false);
    grid.SetRowCount(900'000);
    PictureCount pictures(grid.viewport());
    grid.SetRedraw(true);
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::processEvents();
    EXPECT_LE(pictures.count, 2);
    QFont selected = grid.verticalHeader()->font();
    selected.setBold(true);
    EXPECT_GT(grid.verticalHeader()->width(),
              QFontMetrics(selected).horizontalAdvance(QString::number(900'000)));
}

TEST_F(SpreadGridTest, ACellIsPaintedInItsColoursAndStaysInItsRoom)
{
    constexpr QRgb Silver = qRgb(0xC0, 0xC0, 0xC0);
    grid.Model().SetRowText(2, QString("積層セラミックコンデンサ").repeated(9) + "\r\n\r\n二行目");
    grid.Model().SetRowText(5, "\t\t\tx\t");
    grid.SetBlock(1, 5, 5, 5);
    grid.SetBlockMode(true);
    grid.SetBackColor(Silver);
    grid.SetBlockMode(false);
    grid.selectRow(8);
    grid.SetCurrentCell(1, 12);
    grid.Perform(SpreadGrid::Action::ActivateCell);

    const QImage picture = grid.viewport()->grab().toImage();
    const auto colours = [&](int column, int row) {
        const QRect cell = grid.visualRect(grid.Model().index(row - 1, column - 1));
        std::set<QRgb> found;
        for (int y = cell.top() + 1; y < cell.bottom(); ++y)
            for (int x = cell.left() + 1; x < cell.right(); ++x)
                found.insert(picture.pixel(x, y) | 0xFF000000);
        return found;
    };
    const QRgb white = grid.palette().color(QPalette::Base).rgb();
    EXPECT_EQ(colours(2, 2), std::set{white}) << "beside a text that is too wide";
    EXPECT_EQ(colours(2, 5), std::set{Silver});
    EXPECT_TRUE(colours(1, 2).contains(white));
    EXPECT_GT(colours(1, 2).size(), 2u) << "the text";
    EXPECT_TRUE(colours(1, 9).contains(grid.palette().color(QPalette::Highlight).rgb()));
    EXPECT_TRUE(colours(1, 12).contains(grid.palette().color(QPalette::WindowText).rgb()));
    const QImage before = picture.copy(grid.visualRect(grid.Model().index(2, 0)));
    grid.Model().SetRowText(2, {});
    const QImage after = grid.viewport()->grab().toImage();
    EXPECT_EQ(before, after.copy(grid.visualRect(grid.Model().index(2, 0))))
        << "nothing of the row above stands in the next";
}
