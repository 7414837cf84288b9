#include "grid/GridAccessible.h"

#include "grid/GridView.h"

#include <QApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <algorithm>

GridAccessible::GridAccessible(GridView *grid)
    : QAccessibleWidget(grid, QAccessible::Table)
    , m_noCell(nullptr, -1, -1)
{
    grid->m_accessible = this;
}

GridAccessible::~GridAccessible()
{
    if (GridView *grid = Grid())
        grid->m_accessible = nullptr;
    for (const auto &[place, part] : m_parts)
        QAccessible::deleteAccessibleInterface(part);
}

void GridAccessible::Install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(
            [](const QString &name, QObject *object) -> QAccessibleInterface * {
                auto *grid = name == "GridView" ? qobject_cast<GridView *>(object) : nullptr;
                return grid ? new GridAccessible(grid) : nullptr;
            });
        return true;
    }();
    Q_UNUSED(isInstalled)
}

GridView *GridAccessible::Grid() const
{
    return qobject_cast<GridView *>(object());
}

GridAccessible *GridAccessible::Listening(GridView &grid)
{
    return QAccessible::isActive()
               ? dynamic_cast<GridAccessible *>(QAccessible::queryAccessibleInterface(&grid))
               : nullptr;
}

void GridAccessible::TellActiveCell(GridView &grid)
{
    const GridAccessible *table = Listening(grid);
    if (!table || !grid.hasFocus() || !grid.currentIndex().isValid())
        return;
    QAccessibleEvent event(table->focusChild(), QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void GridAccessible::TellSelection(GridView &grid, const QItemSelection &selected,
                                   const QItemSelection &deselected)
{
    GridAccessible *table = Listening(grid);
    if (!table)
        return;
    QAccessibleEvent within(table, QAccessible::SelectionWithin);
    QAccessible::updateAccessibility(&within);
    const QModelIndex active = grid.currentIndex();
    const bool isSelected = selected.contains(active);
    if (!active.isValid() || (!isSelected && !deselected.contains(active)))
        return;
    QAccessibleEvent event(table->cellAt(active.row(), active.column()),
                           isSelected ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
    QAccessible::updateAccessibility(&event);
}

void GridAccessible::TellRows(GridView &grid)
{
    if (!grid.m_accessible)
        return;
    grid.m_accessible->Forget();
    QMetaObject::invokeMethod(
        &grid, [&grid] { TellActiveCell(grid); }, Qt::QueuedConnection);
}

GridAccessible::Shown GridAccessible::OnScreen() const
{
    const GridView *grid = Grid();
    Shown shown;
    if (!grid || !grid->model() || !grid->isVisible())
        return shown;
    const QRect view = grid->viewport()->rect();
    for (int column = 0; column < grid->model()->columnCount(); ++column) {
        const int left = grid->columnViewportPosition(column);
        if (!grid->isColumnHidden(column) && left <= view.right()
            && left + grid->columnWidth(column) > 0)
            shown.columns.push_back(column);
    }
    shown.hasRowHeadings = grid->verticalHeader()->isVisible();
    const int rows = grid->model()->rowCount();
    shown.firstRow = grid->rowAt(0);
    if (shown.firstRow < 0 || shown.firstRow >= rows)
        return shown;
    const int last = grid->rowAt(view.bottom());
    shown.rows = (last < 0 ? rows : std::min(last + 1, rows)) - shown.firstRow;
    return shown;
}

QAccessibleInterface *GridAccessible::Part(int row, int column) const
{
    GridView *grid = Grid();
    if (!grid)
        return &m_noCell;
    if (const auto known = m_parts.find({row, column}); known != m_parts.end())
        return Known(known->second);
    constexpr size_t Most = 4000; // far more than are on a screen
    if (m_parts.size() >= Most)
        ForgetHidden();
    GridPart *part = nullptr;
    if (row < 0 || column < 0)
        part = new HeadingAccessible(grid, row, column);
    else
        part = new CellAccessible(grid, row, column);
    m_parts[{row, column}] = QAccessible::registerAccessibleInterface(part);
    part->Remember();
    return part;
}

GridPart *GridAccessible::Known(QAccessible::Id part)
{
    return static_cast<GridPart *>(QAccessible::accessibleInterface(part));
}

/// Its holder may be about to ask it something.
void GridAccessible::LetGo(QAccessible::Id part)
{
    Known(part)->Leave();
    QMetaObject::invokeMethod(
        qApp, [part] { QAccessible::deleteAccessibleInterface(part); }, Qt::QueuedConnection);
}

void GridAccessible::Forget() const
{
    for (const auto &[place, part] : m_parts)
        LetGo(part);
    m_parts.clear();
}

void GridAccessible::ForgetHidden() const
{
    std::erase_if(m_parts, [this](const auto &entry) {
        const QAccessible::State state = Known(entry.second)->state();
        if (!state.offscreen || state.focused)
            return false;
        LetGo(entry.second);
        return true;
    });
}

QList<QAccessibleInterface *> GridAccessible::ColumnHeadings(int column) const
{
    if (!Grid() || !Grid()->horizontalHeader()->isVisible())
        return {};
    return {Part(-1, column)};
}

QList<QAccessibleInterface *> GridAccessible::RowHeadings(int row) const
{
    if (!Grid() || !Grid()->verticalHeader()->isVisible())
        return {};
    return {Part(row, -1)};
}

QAccessible::State GridAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    if (Grid() && Grid()->selectionMode() != QAbstractItemView::SingleSelection)
        state.multiSelectable = state.extSelectable = true;
    return state;
}

void *GridAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessibleInterface *GridAccessible::focusChild() const
{
    const GridView *grid = Grid();
    if (!grid || !grid->currentIndex().isValid())
        return nullptr;
    if (QLineEdit *editor = grid->EditorOf(grid->currentIndex()); editor && editor->hasFocus())
        return QAccessible::queryAccessibleInterface(editor);
    return grid->hasFocus() ? cellAt(grid->currentIndex().row(), grid->currentIndex().column())
                            : nullptr;
}

QAccessibleInterface *GridAccessible::childAt(int x, int y) const
{
    for (int index = 0; index < childCount(); ++index)
        if (child(index)->rect().contains(x, y))
            return child(index);
    return nullptr;
}

int GridAccessible::childCount() const
{
    return OnScreen().Count() + (Grid() && Grid()->IsEditing() ? 1 : 0);
}

/// The headings of the columns, then row after row with its heading first, then what holds the
/// editor.
QAccessibleInterface *GridAccessible::child(int index) const
{
    const Shown shown = OnScreen();
    const int columns = int(shown.columns.size());
    if (index < 0 || index >= childCount())
        return nullptr;
    if (index >= shown.Count())
        return QAccessible::queryAccessibleInterface(Grid()->viewport());
    if (index < columns)
        return Part(-1, shown.columns[size_t(index)]);
    const int row = shown.firstRow + (index - columns) / shown.PerRow();
    const int inRow = (index - columns) % shown.PerRow() - (shown.hasRowHeadings ? 1 : 0);
    return Part(row, inRow < 0 ? -1 : shown.columns[size_t(inRow)]);
}

int GridAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const Shown shown = OnScreen();
    const auto *part = dynamic_cast<const GridPart *>(child);
    if (!part) {
        const bool isViewport = child && Grid() && child->object() == Grid()->viewport();
        return isViewport && Grid()->IsEditing() ? shown.Count() : -1;
    }
    const int columns = int(shown.columns.size());
    const auto found = std::ranges::find(shown.columns, part->Column());
    const int inRow = int(found - shown.columns.begin());
    if (!part->isValid() || (part->Column() >= 0 && inRow == columns))
        return -1;
    if (part->Row() < 0)
        return inRow;
    const int row = part->Row() - shown.firstRow;
    if (row < 0 || row >= shown.rows)
        return -1;
    const int first = columns + row * shown.PerRow();
    return part->Column() < 0 ? first : first + (shown.hasRowHeadings ? 1 : 0) + inRow;
}

/// An invalid cell where there is none: Qt's bridge to the bus asks it without a look.
QAccessibleInterface *GridAccessible::cellAt(int row, int column) const
{
    const bool isInside = row >= 0 && row < rowCount() && column >= 0 && column < columnCount();
    return isInside ? Part(row, column) : &m_noCell;
}

int GridAccessible::columnCount() const
{
    return Grid() && Grid()->model() ? Grid()->model()->columnCount() : 0;
}

int GridAccessible::rowCount() const
{
    return Grid() && Grid()->model() ? Grid()->model()->rowCount() : 0;
}

QString GridAccessible::columnDescription(int column) const
{
    const bool isInside = column >= 0 && column < columnCount();
    return isInside ? Part(-1, column)->text(QAccessible::Name) : QString();
}

QString GridAccessible::rowDescription(int row) const
{
    const bool isInside = row >= 0 && row < rowCount();
    return isInside ? Part(row, -1)->text(QAccessible::Name) : QString();
}

int GridAccessible::selectedCellCount() const
{
    return selectedRowCount() * columnCount();
}

QList<QAccessibleInterface *> GridAccessible::selectedCells() const
{
    QList<QAccessibleInterface *> cells;
    const Shown shown = OnScreen();
    for (int row = shown.firstRow; row < shown.firstRow + shown.rows; ++row)
        for (const int column : shown.columns)
            if (isRowSelected(row))
                cells += Part(row, column);
    return cells;
}

int GridAccessible::selectedRowCount() const
{
    int count = 0;
    if (Grid())
        for (const auto &[first, last] : Grid()->SelectedRowRanges())
            count += last - first + 1;
    return count;
}

QList<int> GridAccessible::selectedRows() const
{
    QList<int> rows;
    if (Grid())
        for (const auto &[first, last] : Grid()->SelectedRowRanges())
            for (int row = first; row <= last; ++row)
                rows += row - 1;
    return rows;
}

bool GridAccessible::isRowSelected(int row) const
{
    return Grid() && Grid()->IsRowSelected(row + 1);
}

bool GridAccessible::ChangeSelection(int row, bool isSelected)
{
    GridView *grid = Grid();
    if (!grid || row < 0 || row >= rowCount() || !grid->IsWithinReach() || !grid->FinishEdit())
        return false;
    const bool isSingle = grid->selectionMode() == QAbstractItemView::SingleSelection;
    if (isSingle && isSelected)
        grid->Activate(std::max(1, grid->ActiveColumn()), row + 1);
    else if (!isSingle)
        grid->selectionModel()->select(
            grid->model()->index(row, 0),
            QItemSelectionModel::Rows
                | (isSelected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect));
    return isRowSelected(row) == isSelected;
}

bool GridAccessible::selectRow(int row)
{
    return ChangeSelection(row, true);
}

bool GridAccessible::unselectRow(int row)
{
    return ChangeSelection(row, false);
}

void GridAccessible::modelChange(QAccessibleTableModelChangeEvent *event)
{
    if (event->modelChangeType() != QAccessibleTableModelChangeEvent::DataChanged)
        return; // the grid tells of these, also of those that come before anybody listens
    // A row's heading tells of its cells.
    const std::map<std::pair<int, int>, QAccessible::Id> parts(
        m_parts.lower_bound({event->firstRow(), -1}),
        m_parts.upper_bound({event->lastRow(), INT_MAX}));
    for (const auto &[place, part] : parts)
        Known(part)->TellChange();
}
