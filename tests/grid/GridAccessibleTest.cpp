#include "grid/GridAccessible.h"

#include "grid/GridView.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/WindowHands.h"

#include <QDialog>
#include <set>

namespace {

constexpr int Order = 0;
constexpr int Quantity = 1;
constexpr int Date = 2;
constexpr int Hidden = 3;
constexpr int Columns = 4;
constexpr int Shipped = 3; ///< a row, locked
constexpr int Million = 1'000'000;

/// Rows of an order, a quantity, a date and a hidden column; counts how often it is asked.
class Rows : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : count;
    }
    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : Columns;
    }
    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override
    {
        ++questions;
        return QAbstractTableModel::index(row, column, parent);
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        ++questions;
        if (role == Qt::AccessibleDescriptionRole)
            return index.row() == Shipped ? "出荷済" : "";
        if (role == Qt::AccessibleTextRole && index.column() == Order)
            return "EDI";
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        if (const auto typed = texts.find({index.row(), index.column()}); typed != texts.end())
            return typed->second;
        const QVariant shown[] = {"*", "5.000", "26/12/01\n77", "x"};
        const QVariant edited[] = {"", "5", "261201", ""};
        return (role == Qt::EditRole ? edited : shown)[index.column()];
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        const QVariant names[] = {"注文№\n商品ｺｰﾄﾞ", "回答数量", "回答納期", "x"};
        return orientation == Qt::Vertical ? QString::number(section + 1) + mark : names[section];
    }
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        const bool isTyped
            = (index.column() == Quantity || index.column() == Date) && index.row() != Shipped;
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable
               | (isTyped ? Qt::ItemIsEditable : Qt::NoItemFlags);
    }
    bool setData(const QModelIndex &index, const QVariant &typed, int) override
    {
        texts[{index.row(), index.column()}] = typed.toString();
        mark = " 変更あり";
        emit dataChanged(this->index(0, 0), this->index(count - 1, Columns - 1));
        return true;
    }
    void Remove(int row)
    {
        beginRemoveRows({}, row, row);
        --count;
        endRemoveRows();
    }
    void Insert(int row)
    {
        beginInsertRows({}, row, row);
        ++count;
        endInsertRows();
    }
    void Reset(int rows)
    {
        beginResetModel();
        count = rows;
        endResetModel();
    }

    int count = Million;
    QString mark;
    std::map<std::pair<int, int>, QString> texts;
    mutable qint64 questions = 0;
};

/// What a screen reader has been told.
std::vector<std::pair<QAccessible::Event, QString>> &Told()
{
    static std::vector<std::pair<QAccessible::Event, QString>> told;
    return told;
}

/// A shown grid over a million rows, and a screen reader that listens.
class GridAccessibleTest : public testing::Test
{
protected:
    GridAccessibleTest()
    {
        grid.setModel(&rows);
        grid.SetTextLines(1);
        grid.SetColumnWidth(Hidden + 1, 0);
        grid.SetColumnInput(Quantity + 1, std::make_unique<QuantityCellInput>());
        grid.SetColumnInput(Date + 1, std::make_unique<DateCellInput>());
        grid.resize(500, 400);
        grid.show();
        grid.activateWindow();
        grid.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&grid));
        grid.Activate(1, 1);
        QApplication::processEvents();
        QAccessible::installUpdateHandler([](QAccessibleEvent *event) {
            const QAccessibleInterface *about = event->accessibleInterface();
            Told().emplace_back(event->type(), about ? about->text(QAccessible::Name) : QString());
        });
        Told().clear();
    }
    ~GridAccessibleTest() override { QAccessible::installUpdateHandler(nullptr); }

    QAccessibleInterface *Table() { return QAccessible::queryAccessibleInterface(&grid); }
    QAccessibleInterface *Cell(int row, int column)
    {
        return Table()->tableInterface()->cellAt(row, column);
    }
    QString Name(int row, int column) { return Cell(row, column)->text(QAccessible::Name); }
    QString Text(int row, int column) { return Cell(row, column)->textInterface()->text(0, -1); }

    /// The rows on the screen, headings left out; each child must say that it is one.
    std::set<int> ShownRows()
    {
        std::set<int> shown;
        for (int index = 0; index < Table()->childCount(); ++index) {
            QAccessibleInterface *part = Table()->child(index);
            EXPECT_EQ(Table()->indexOfChild(part), index);
            EXPECT_EQ(part->parent(), Table());
            EXPECT_FALSE(part->state().offscreen || part->rect().isEmpty()) << index;
            const QPoint middle = part->rect().center();
            if (grid.rect().contains(grid.mapFromGlobal(middle))) {
                EXPECT_EQ(Table()->childAt(middle.x(), middle.y()), part) << index;
            }
            if (const auto *cell = part->tableCellInterface()) {
                EXPECT_NE(cell->columnIndex(), Hidden);
                shown.insert(cell->rowIndex());
            }
        }
        return shown;
    }

    ScriptedBoxes boxes;
    Rows rows;
    GridView grid;
};

} // namespace

TEST_F(GridAccessibleTest, HasTheChildrenThatAreOnTheScreen)
{
    const size_t onScreen = ShownRows().size();
    EXPECT_GT(onScreen, 5U);
    EXPECT_LT(onScreen, 40U);
    EXPECT_EQ(*ShownRows().begin(), 0);
    EXPECT_EQ(Table()->childCount(), int(3 + onScreen * 4));
    EXPECT_EQ(Table()->tableInterface()->rowCount(), Million);
    EXPECT_EQ(Table()->role(), QAccessible::Table);

    QAccessibleInterface *last = Cell(Million - 1, Order);
    EXPECT_TRUE(last->state().offscreen && last->state().invisible && last->isValid());
    EXPECT_EQ(Table()->indexOfChild(last), -1);
    EXPECT_TRUE(Cell(0, Hidden)->state().invisible);
    grid.Activate(1, Million);
    EXPECT_EQ(*ShownRows().rbegin(), Million - 1);
    EXPECT_FALSE(last->state().offscreen);
    EXPECT_TRUE(Cell(0, Order)->state().offscreen);

    rows.Reset(2);
    QApplication::processEvents();
    EXPECT_EQ(ShownRows(), (std::set{0, 1}));
    rows.Reset(0);
    EXPECT_EQ(ShownRows(), std::set<int>());
    // A bridge to the bus asks for any place, and then the cell.
    for (const auto &[row, column] : {std::pair{-1, 0}, {0, 0}, {2, 0}, {0, Columns}}) {
        const auto *cell = Cell(row, column)->tableCellInterface();
        EXPECT_FALSE(cell->isSelected());
        EXPECT_FALSE(Cell(row, column)->isValid());
    }
}

TEST_F(GridAccessibleTest, SaysInWordsWhatIsSeen)
{
    EXPECT_EQ(Name(0, Order), "EDI");
    EXPECT_EQ(Name(0, Date), "26/12/01 77");
    EXPECT_EQ(Name(Shipped, Order), "EDI、出荷済");
    EXPECT_EQ(Text(0, Date), "26/12/01\n77");
    EXPECT_EQ(Text(Shipped, Quantity), "5.000");

    const QAccessible::State typed = Cell(0, Quantity)->state();
    const QAccessible::State locked = Cell(Shipped, Quantity)->state();
    EXPECT_TRUE(typed.editable && !typed.readOnly && Cell(0, Quantity)->editableTextInterface());
    EXPECT_TRUE(!locked.editable && locked.readOnly
                && !Cell(Shipped, Quantity)->editableTextInterface());

    auto *cell = Cell(1, Date)->tableCellInterface();
    EXPECT_EQ(cell->columnHeaderCells().value(0)->text(QAccessible::Name), "回答納期");
    EXPECT_EQ(cell->rowHeaderCells().value(0)->text(QAccessible::Name), "2");
    EXPECT_EQ(Table()->tableInterface()->columnDescription(Order), "注文№ 商品ｺｰﾄﾞ");
    EXPECT_EQ(Table()->child(0)->role(), QAccessible::ColumnHeader);
}

TEST_F(GridAccessibleTest, TypingIntoACellIsTyping)
{
    const auto set = [](auto &cell, const char *text) { cell.setText(QAccessible::Value, text); };
    const std::tuple<const char *, int, int, const char *, const char *, const char *> cases[] = {
        // what, row, column, typed: the cell shows, the editor holds
        {"quantity", 1, Quantity, "12.5", "12.5", nullptr},
        {"with separators, full width", 1, Quantity, "１,000", "1000", nullptr},
        {"emptied", 1, Quantity, "", "", nullptr},
        {"no number", 1, Quantity, "abc", "5.000", "5"},
        {"date", 1, Date, "261224", "261224", nullptr},
        {"date as it is shown", 1, Date, "26/12/24", "261224", nullptr},
        {"no date of the calendar", 1, Date, "2613", "26/12/01\n77", "2613"},
        {"locked", Shipped, Quantity, "1", "5.000", nullptr},
        {"never typed into", 1, Order, "1", "EDI", nullptr},
        {"far away", Million - 1, Quantity, "3", "3", nullptr},
    };
    for (const auto &[what, row, column, typed, shown, editor] : cases) {
        SCOPED_TRACE(what);
        rows.texts.clear();
        set(*Cell(row, column), typed);
        QApplication::processEvents();
        ASSERT_EQ(grid.IsEditing(), editor != nullptr);
        EXPECT_EQ(Text(row, column), editor ? editor : shown);
        grid.CancelEdit();
        EXPECT_EQ(Text(row, column), shown);
    }
    EXPECT_EQ(boxes.Shown().size(), 1U); // the date's
}

TEST_F(GridAccessibleTest, APartOfATextIsChangedInTheEditor)
{
    const auto edit = [this] { return Cell(1, Date)->editableTextInterface(); };
    edit()->deleteText(2, 3); // would not mean the same there
    EXPECT_EQ(Text(1, Date), "261201");
    EXPECT_EQ(Table()->child(Table()->childCount() - 1)->child(0)->text(QAccessible::Value),
              "261201");
    edit()->deleteText(4, 6);
    edit()->insertText(4, "24");
    EXPECT_EQ(Text(1, Date), "261224");
    EXPECT_TRUE(rows.texts.empty());
    Key(Qt::Key_Return);
    EXPECT_EQ(Text(1, Date), "261224");
    EXPECT_FALSE(grid.IsEditing());

    // Key by key, beginning with nothing.
    edit()->deleteText(0, 6);
    edit()->insertText(0, "2");
    edit()->insertText(1, "61225");
    QApplication::processEvents();
    EXPECT_EQ(Text(1, Date), "261225");
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_EQ(rows.texts.begin()->second, "261225");
}

TEST_F(GridAccessibleTest, NothingIsDoneBehindABox)
{
    QDialog box(&grid);
    box.setModal(true);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
    Cell(1, Quantity)->setText(QAccessible::Value, "7");
    Cell(1, Quantity)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_FALSE(Table()->tableInterface()->selectRow(2));
    QApplication::processEvents();
    EXPECT_EQ(Text(1, Quantity), "5.000");
    EXPECT_EQ(grid.ActiveRow(), 1);
    EXPECT_TRUE(grid.SelectedRowRanges().empty());
}

TEST_F(GridAccessibleTest, RowsAreSelectedAndCellsGoneTo)
{
    auto *table = Table()->tableInterface();
    EXPECT_TRUE(table->selectRow(2) && table->selectRow(Shipped) && table->unselectRow(2));
    EXPECT_FALSE(table->selectRow(Million) || table->selectRow(-1));
    EXPECT_EQ(table->selectedRows(), QList{Shipped});
    EXPECT_TRUE(Cell(Shipped, Order)->state().selected && !Cell(2, Order)->state().selected);
    Cell(500, Date)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(grid.ActiveRow(), 501);
    EXPECT_TRUE(Cell(500, Date)->state().focused && !Cell(500, Date)->state().offscreen);
    EXPECT_EQ(Table()->focusChild(), Cell(500, Date));

    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(table->selectedRowCount(), Million);
}

TEST_F(GridAccessibleTest, ACellWhoseRowHasGoneIsInvalid)
{
    const std::pair<const char *, std::function<void()>> cases[] = {
        {"removed", [this] { rows.Remove(1); }},
        {"inserted", [this] { rows.Insert(0); }},
        {"another list", [this] { rows.Reset(5); }},
    };
    for (const auto &[what, change] : cases) {
        SCOPED_TRACE(what);
        QAccessibleInterface *held[] = {Cell(1, Quantity), Table()->child(0)};
        const QAccessible::Id id = QAccessible::uniqueId(held[0]);
        change();
        for (QAccessibleInterface *part : held) {
            EXPECT_FALSE(part->isValid());
            EXPECT_TRUE(part->rect().isEmpty() && !part->parent() && part->state().invalid);
            EXPECT_EQ(part->text(QAccessible::Name), "");
        }
        held[0]->setText(QAccessible::Value, "9");
        held[0]->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_EQ(held[0]->textInterface()->characterCount(), 0);
        EXPECT_TRUE(held[0]->tableCellInterface()->columnHeaderCells().isEmpty());
        QApplication::processEvents();
        EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
        EXPECT_TRUE(rows.texts.empty());
    }
    // Nor does a reader that walks down the list keep all of it.
    const QAccessible::Id first = QAccessible::uniqueId(Cell(4, Quantity));
    rows.Reset(Million);
    grid.Activate(1, Million);
    for (int row = 0; row < 10'000; ++row)
        Cell(row, Quantity);
    QApplication::processEvents();
    EXPECT_EQ(QAccessible::accessibleInterface(first), nullptr);
    EXPECT_TRUE(Cell(Million - 1, Order)->isValid());
}

/// Told on a real bus only: Qt is silent without one.
TEST_F(GridAccessibleTest, TellsWhatHappens)
{
    if (!qEnvironmentVariableIsSet("LISTENED_TO"))
        GTEST_SKIP();
    ASSERT_TRUE(QTest::qWaitFor([] { return QAccessible::isActive(); }));
    using Events = std::vector<std::pair<QAccessible::Event, QString>>;
    const auto told = [](const std::set<QAccessible::Event> &kinds) {
        QApplication::processEvents();
        Events events;
        for (const auto &event : Told())
            if (kinds.contains(event.first))
                events.push_back(event);
        Told().clear();
        return events;
    };
    Key(Qt::Key_Down);
    Key(Qt::Key_Right);
    EXPECT_EQ(told({QAccessible::Focus}),
              (Events{{QAccessible::Focus, "EDI"}, {QAccessible::Focus, "5.000"}}));

    Key(Qt::Key_Return); // leaves the selection above
    Key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(told({QAccessible::SelectionAdd, QAccessible::SelectionRemove}),
              (Events{{QAccessible::SelectionAdd, "5.000"}}));

    QAccessibleInterface *heading = Cell(2, Quantity)->tableCellInterface()->rowHeaderCells()[0];
    EXPECT_EQ(heading->text(QAccessible::Name), "3");
    Keys("8");
    Told().clear(); // the editor's own
    Key(Qt::Key_Return);
    EXPECT_EQ(told({QAccessible::NameChanged, QAccessible::TextUpdated}),
              (Events{{QAccessible::NameChanged, "3 変更あり"},
                      {QAccessible::TextUpdated, "8"},
                      {QAccessible::NameChanged, "8"}}));

    rows.questions = 0;
    Key(Qt::Key_A, Qt::ControlModifier); // not cell by cell
    EXPECT_EQ(grid.SelectedRowRanges(), (std::vector<GridView::RowRange>{{1, Million}}));
    EXPECT_LT(rows.questions, 10'000);

    Told().clear();
    rows.Insert(0);
    EXPECT_EQ(told({QAccessible::Focus}).size(), 1U); // what was told of is no more
    auto *other = new QLineEdit(&grid);
    other->show();
    other->setFocus();
    QApplication::processEvents();
    Told().clear();
    grid.setFocus();
    EXPECT_EQ(told({QAccessible::Focus}).back().second, "5.000"); // the cell after the grid
}
