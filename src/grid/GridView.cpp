#include "grid/GridView.h"

#include "grid/CellDelegate.h"
#include "grid/GridAccessible.h"
#include "platform/LongWork.h"

#include <QApplication>
#include <QClipboard>
#include <QFocusEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <algorithm>

GridView::GridView(QWidget *parent)
    : QTableView(parent)
{
    GridAccessible::Install();
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setItemDelegate(new CellDelegate(this));
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false); // whole rows are selected
    horizontalHeader()->setSectionsClickable(false); // and no columns
    setCornerButtonEnabled(false);
    horizontalHeader()->setMinimumSectionSize(24);
    horizontalHeader()->setStretchLastSection(true);

    // A press on a heading leaves a cell in edit as one on another cell does.
    for (QHeaderView *header : {horizontalHeader(), verticalHeader()})
        header->viewport()->installEventFilter(this);
}

void GridView::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    const auto forgetRows = [this] {
        m_isSelectionKnown = false;
        GridAccessible::TellRows(*this);
    };
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { m_isSelectionKnown = false; });
    connect(model, &QAbstractItemModel::rowsInserted, this, forgetRows);
    connect(model, &QAbstractItemModel::rowsRemoved, this, forgetRows);
    connect(model, &QAbstractItemModel::columnsInserted, this, forgetRows);
    connect(model, &QAbstractItemModel::columnsRemoved, this, forgetRows);
    connect(model, &QAbstractItemModel::modelReset, this, forgetRows);
}

QModelIndex GridView::Index(int column, int row) const
{
    return model()->index(row - 1, column - 1);
}

bool GridView::IsEditable(int column, int row) const
{
    return model()->flags(Index(column, row)).testFlag(Qt::ItemIsEditable);
}

void GridView::Activate(int column, int row)
{
    const QModelIndex cell = Index(column, row);
    selectionModel()->setCurrentIndex(cell, m_isRowMode ? QItemSelectionModel::ClearAndSelect
                                                              | QItemSelectionModel::Rows
                                                        : QItemSelectionModel::NoUpdate);
    scrollTo(cell);
}

const std::vector<GridView::RowRange> &GridView::SelectedRowRanges() const
{
    if (m_isSelectionKnown)
        return m_selectedRows;
    std::vector<RowRange> ranges;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        ranges.emplace_back(range.top() + 1, range.bottom() + 1);
    std::sort(ranges.begin(), ranges.end());
    m_selectedRows.clear();
    for (const RowRange &range : ranges) {
        if (m_selectedRows.empty() || range.first > m_selectedRows.back().second + 1)
            m_selectedRows.push_back(range);
        else
            m_selectedRows.back().second = std::max(m_selectedRows.back().second, range.second);
    }
    m_isSelectionKnown = true;
    return m_selectedRows;
}

bool GridView::IsRowSelected(int row) const
{
    const auto &ranges = SelectedRowRanges();
    const auto after
        = std::upper_bound(ranges.begin(), ranges.end(), row,
                           [](int value, const RowRange &range) { return value < range.first; });
    return after != ranges.begin() && row <= std::prev(after)->second;
}

void GridView::SetSelectedRows(const std::vector<RowRange> &ranges)
{
    QItemSelection selection;
    for (const auto &[first, last] : ranges)
        selection.append({Index(1, first), Index(model()->columnCount(), last)});
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void GridView::SetColumnInput(int column, std::unique_ptr<CellInput> input)
{
    m_inputs[column] = std::move(input);
}

void GridView::SetColumnWidth(int column, int width)
{
    setColumnHidden(column - 1, width == 0);
    if (width > 0)
        setColumnWidth(column - 1, width);
}

void GridView::SetTextLines(int lines)
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() * lines + 8);
}

void GridView::SetRowMode()
{
    m_isRowMode = true;
    setSelectionMode(SingleSelection);
}

QString GridView::SelectedText() const
{
    const std::vector<RowRange> &rows = SelectedRowRanges();
    if (rows.empty())
        return currentIndex().data().toString();
    QString text;
    const auto addLine = [&](auto &&cellOf) {
        QStringList cells;
        for (int column = 0; column < model()->columnCount(); ++column) {
            if (isColumnHidden(column))
                continue;
            QString cell = cellOf(column).toString();
            if (cell.contains('\n') || cell.contains('"'))
                cell = '"' + cell.replace('"', "\"\"") + '"';
            cells += cell;
        }
        text += cells.join('\t') + '\n';
    };
    addLine([this](int column) { return model()->headerData(column, Qt::Horizontal); });
    for (const auto &[first, last] : rows)
        for (int row = first; row <= last; ++row)
            addLine([&](int column) { return model()->index(row - 1, column).data(); });
    return text;
}

QLineEdit *GridView::BeginEdit(QWidget *parent, const QModelIndex &index)
{
    const CellInput *input = m_inputs.at(index.column() + 1).get();
    auto *editor = new QLineEdit(parent);
    editor->setObjectName("cellEditor");
    editor->setAccessibleName(
        model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    editor->setAutoFillBackground(true);
    const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    editor->setAlignment((alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter);
    editor->setText(index.data(Qt::EditRole).toString());
    input->Prepare(*editor);
    editor->selectAll();
    editor->installEventFilter(this);
    m_editor = editor;
    m_editedCell = index;
    m_typedBefore = editor->text();
    return editor;
}

bool GridView::FinishEdit()
{
    if (!m_editor || m_isFinishing)
        return !m_isFinishing;
    const QModelIndex cell = m_editedCell;
    const QString typed = m_editor->text();
    if (typed == m_typedBefore) {
        CancelEdit();
        return true;
    }
    m_isFinishing = true; // its message box takes the focus, which is not another leaving
    const bool isAccepted = m_inputs.at(cell.column() + 1)->Accepts(typed);
    m_isFinishing = false;
    if (!isAccepted) {
        if (m_editor) {
            m_editor->setFocus();
            m_editor->selectAll();
        }
        return false;
    }
    CancelEdit();
    model()->setData(cell, typed, Qt::EditRole);
    return true;
}

void GridView::FinishLeftEdit()
{
    // The focus has come back when the press that took it has refused the text already.
    if (m_editor && !m_editor->hasFocus())
        FinishEdit();
}

void GridView::CancelEdit()
{
    if (!m_editor)
        return;
    QLineEdit *editor = m_editor;
    m_editor = nullptr;
    const bool hadFocus = editor->hasFocus();
    editor->setObjectName({}); // it lives on for a moment, and is not the next editor
    closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (hadFocus)
        setFocus();
}

bool GridView::IsWithinReach() const
{
    const QWidget *modal = QApplication::activeModalWidget();
    return isVisible() && isEnabled() && (!modal || modal->isAncestorOf(this))
           && !LongWork::IsRunning();
}

QLineEdit *GridView::OpenEditor(const QModelIndex &cell)
{
    if (EditorOf(cell) || !cell.flags().testFlag(Qt::ItemIsEditable) || !IsWithinReach()
        || !FinishEdit())
        return EditorOf(cell);
    Activate(cell.column() + 1, cell.row() + 1);
    QTableView::edit(cell);
    return EditorOf(cell);
}

QLineEdit *GridView::EditorOf(const QModelIndex &cell) const
{
    return m_editor && cell.isValid() && m_editedCell == cell ? m_editor : nullptr;
}

/// False where there is no cell to go to.
bool GridView::Move(int columns, int rows)
{
    const int rowCount = model()->rowCount();
    const int columnCount = model()->columnCount();
    int column = ActiveColumn() + columns;
    int row = ActiveRow() + rows;
    if (columns != 0) {
        // Along the cells that can be typed into, from row to row.
        while (row >= 1 && row <= rowCount) {
            while (column >= 1 && column <= columnCount && !IsEditable(column, row))
                column += columns;
            if (column >= 1 && column <= columnCount)
                break;
            row += columns;
            column = columns > 0 ? 1 : columnCount;
        }
    }
    if (row < 1 || row > rowCount)
        return false;
    selectionModel()->setCurrentIndex(Index(column, row), QItemSelectionModel::NoUpdate);
    return true;
}

bool GridView::focusNextPrevChild(bool next)
{
    // Tab goes from cell to cell, in edit or not; past the last one it leaves.
    return (!m_isRowMode && Move(next ? 1 : -1, 0)) || QTableView::focusNextPrevChild(next);
}

bool GridView::HandleEditorKey(QKeyEvent *event)
{
    int columns = 0;
    int rows = 0;
    switch (event->key()) {
    case Qt::Key_Escape:
        CancelEdit();
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        // With Ctrl too, where the box itself has no use for it.
        if (event->key() == Qt::Key_Home)
            m_editor->home(event->modifiers() & Qt::ShiftModifier);
        else
            m_editor->end(event->modifiers() & Qt::ShiftModifier);
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        rows = event->modifiers() & Qt::ShiftModifier ? -1 : 1;
        break;
    case Qt::Key_Down:
        rows = 1;
        break;
    case Qt::Key_Up:
        rows = -1;
        break;
    case Qt::Key_Tab:
        columns = 1;
        break;
    case Qt::Key_Backtab:
        columns = -1;
        break;
    default:
        return false;
    }
    if (FinishEdit())
        Move(columns, rows);
    return true;
}

bool GridView::eventFilter(QObject *object, QEvent *event)
{
    const bool isHeading
        = object == horizontalHeader()->viewport() || object == verticalHeader()->viewport();
    if (isHeading && event->type() == QEvent::MouseButtonPress) {
        MeanSelection();
        return !FinishEdit();
    }
    if (object != m_editor)
        return QTableView::eventFilter(object, event);
    if (event->type() == QEvent::KeyPress)
        return HandleEditorKey(static_cast<QKeyEvent *>(event));
    if (event->type() == QEvent::ShortcutOverride
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            QMetaObject::invokeMethod(this, &GridView::FinishLeftEdit, Qt::QueuedConnection);
    }
    return false;
}

bool GridView::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    // A blank begins no text; it selects the row.
    if (trigger == AnyKeyPressed && event && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space)
        return false;
    const bool isStarted = QTableView::edit(index, trigger, event);
    // A quantity begun with the point gets its zero.
    if (isStarted && trigger == AnyKeyPressed && m_editor && m_editor->text() == ".") {
        const QString prefix = m_inputs.at(index.column() + 1)->PointPrefix();
        m_editor->setText(prefix + m_editor->text());
    }
    return isStarted;
}

void GridView::keyPressEvent(QKeyEvent *event)
{
    if (m_isRowMode && (event->key() == Qt::Key_Home || event->key() == Qt::Key_End)) {
        if (model()->rowCount() > 0)
            Activate(std::max(1, ActiveColumn()),
                     event->key() == Qt::Key_Home ? 1 : model()->rowCount());
        return;
    }
    if (event->matches(QKeySequence::Copy)) {
        QApplication::clipboard()->setText(SelectedText());
        return;
    }
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        const QPoint place = visualRect(currentIndex()).center();
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, place, viewport()->mapToGlobal(place));
        QApplication::sendEvent(this, &menu);
        return;
    }
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ShiftModifier) {
        selectionModel()->select(currentIndex(),
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        MeanSelection(); // also where it was selected before
        return;
    }
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !m_isRowMode) {
        // Enter, pressed to close a box that is not there, must not lead away from what is wrong.
        if (currentIndex().data(MendRole).toBool())
            QTableView::edit(currentIndex());
        else
            Move(0, event->modifiers() & Qt::ShiftModifier ? -1 : 1);
        return;
    }
    if (isEnter || event->key() == Qt::Key_Escape) {
        event->ignore(); // the form's
        return;
    }
    {
        const bool isExtending = event->modifiers() & Qt::ShiftModifier;
        const bool isAdding = event->modifiers() & Qt::ControlModifier;
        const QScopedValueRollback extending(m_isExtending, isExtending);
        const QScopedValueRollback moving(m_isMoving, !isExtending && !isAdding
                                                          && event->key() != Qt::Key_Space);
        QTableView::keyPressEvent(event);
        if (event->key() == Qt::Key_Space)
            MeanSelection();
    }
    // At the edge of the grid an arrow leads nowhere: not to a button, which Enter would press.
    const bool isArrow = event->key() >= Qt::Key_Left && event->key() <= Qt::Key_Down;
    if (isArrow && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        event->accept();
}

void GridView::keyboardSearch(const QString &search)
{
    // In a list to pick from a letter goes to its entry; elsewhere keys are for the cells.
    if (m_isRowMode)
        QTableView::keyboardSearch(search);
}

void GridView::mousePressEvent(QMouseEvent *event)
{
    if (!FinishEdit())
        return;
    const QScopedValueRollback extending(m_isExtending,
                                         bool(event->modifiers() & Qt::ShiftModifier));
    QTableView::mousePressEvent(event);
    MeanSelection();
}

void GridView::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableView::mouseDoubleClickEvent(event);
    const QModelIndex cell = indexAt(event->pos());
    if (cell.isValid() && event->button() == Qt::LeftButton)
        emit CellDoubleClicked(cell.column() + 1, cell.row() + 1);
}

/// Shift selects from the row where the active cell was, however it came there, which Qt knows only
/// of its own ways.
QItemSelectionModel::SelectionFlags GridView::selectionCommand(const QModelIndex &index,
                                                               const QEvent *event) const
{
    const bool isMoving
        = event && (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress);
    if (m_isRowMode || !m_isExtending || !isMoving || !index.isValid() || !m_anchor.isValid())
        return QTableView::selectionCommand(index, event);
    const auto [first, last] = std::minmax({m_anchor.row(), index.row()});
    const bool isAdded = static_cast<const QInputEvent *>(event)->modifiers() & Qt::ControlModifier;
    selectionModel()->select({Index(1, first + 1), Index(model()->columnCount(), last + 1)},
                             isAdded ? QItemSelectionModel::Select
                                     : QItemSelectionModel::ClearAndSelect);
    return QItemSelectionModel::NoUpdate;
}

void GridView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    // Not QTableView's, which tells of cells as its own accessible object counts them.
    QAbstractItemView::currentChanged(current, previous);
    if (!m_isExtending)
        m_anchor = current;
    // Qt switches it on for cells that can be typed into; an input method would take the first key.
    setAttribute(Qt::WA_InputMethodEnabled, false);
    emit CellLeft(previous.column() + 1, previous.row() + 1, current.column() + 1,
                  current.row() + 1);
    GridAccessible::TellActiveCell(*this);
}

void GridView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    // Not QTableView's, which goes through every single cell.
    QAbstractItemView::selectionChanged(selected, deselected);
    m_isSelectionMovedTo = m_isMoving;
    GridAccessible::TellSelection(*this, selected, deselected);
}

void GridView::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event);
    // Once Qt has told of the grid.
    QMetaObject::invokeMethod(
        this, [this] { GridAccessible::TellActiveCell(*this); }, Qt::QueuedConnection);
}
