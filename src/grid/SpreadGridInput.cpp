// The grid control's other half: what the operator's keys and mouse do, and editing in the cells.

#include "grid/SpreadGrid.h"

#include <QApplication>
#include <QClipboard>
#include <QFocusEvent>
#include <QHeaderView>

QLineEdit *SpreadGrid::BeginEdit(QWidget *parent, const QModelIndex &index)
{
    const CellInput *input = m_inputs.at(index.column() + 1).get();
    auto *editor = new QLineEdit(parent);
    editor->setObjectName("cellEditor");
    editor->setAccessibleName(m_model.Heading(index.column() + 1));
    editor->setFrame(false);
    editor->setAutoFillBackground(true);
    editor->setText(input->ToTyped(m_model.Text(index.column() + 1, index.row() + 1)));
    input->Prepare(*editor);
    editor->selectAll();
    editor->installEventFilter(this);
    m_editor = editor;
    m_editedCell = index;
    m_typedBefore = editor->text();
    return editor;
}

bool SpreadGrid::FinishEdit()
{
    if (!m_editor || m_isFinishing)
        return !m_isFinishing;
    const int column = m_editedCell.column() + 1;
    const int row = m_editedCell.row() + 1;
    const QString typed = m_editor->text();
    if (typed == m_typedBefore) {
        CancelEdit();
        return true;
    }
    QString shown;
    m_isFinishing = true; // its message box takes the focus, which is not another leaving
    const bool isAccepted = m_inputs.at(column)->ToShown(typed, shown);
    m_isFinishing = false;
    if (!isAccepted) {
        if (m_editor) {
            m_editor->setFocus();
            m_editor->selectAll();
        }
        return false;
    }
    CancelEdit();
    m_model.SetText(column, row, shown);
    emit CellChanged(column, row);
    return true;
}

void SpreadGrid::FinishLeftEdit()
{
    // The focus has come back when the press that took it has refused the text already.
    if (m_editor && !m_editor->hasFocus())
        FinishEdit();
}

void SpreadGrid::CancelEdit()
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

void SpreadGrid::MoveAfterEdit(int columns, int rows)
{
    int column = ActiveColumn() + columns;
    int row = ActiveRow() + rows;
    if (columns != 0) {
        // Along the cells that can be typed into, from row to row.
        while (row >= 1 && row <= RowCount()) {
            while (column >= 1 && column <= ColumnCount() && !m_model.IsEditable(column, row))
                column += columns;
            if (column >= 1 && column <= ColumnCount())
                break;
            row += columns;
            column = columns > 0 ? 1 : ColumnCount();
        }
    }
    if (row < 1 || row > RowCount())
        return;
    SetCurrentCell(column, row);
    selectionModel()->setCurrentIndex(m_model.index(row - 1, column - 1),
                                      QItemSelectionModel::NoUpdate);
}

bool SpreadGrid::HandleEditorKey(QKeyEvent *event)
{
    int columns = 0;
    int rows = 0;
    switch (event->key()) {
    case Qt::Key_Escape:
        CancelEdit();
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
        MoveAfterEdit(columns, rows);
    return true;
}

bool SpreadGrid::eventFilter(QObject *object, QEvent *event)
{
    const bool isHeading
        = object == horizontalHeader()->viewport() || object == verticalHeader()->viewport();
    if (isHeading && event->type() == QEvent::MouseButtonPress)
        return !FinishEdit();
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
            QMetaObject::invokeMethod(this, &SpreadGrid::FinishLeftEdit, Qt::QueuedConnection);
    }
    return false;
}

bool SpreadGrid::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    const bool isStarted = QTableView::edit(index, trigger, event);
    // A quantity begun with the point gets its zero.
    if (isStarted && trigger == AnyKeyPressed && m_editor && m_editor->text() == ".") {
        const QString prefix = m_inputs.at(index.column() + 1)->PointPrefix();
        m_editor->setText(prefix + m_editor->text());
    }
    return isStarted;
}

void SpreadGrid::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        QApplication::clipboard()->setText(SelectedText());
        return;
    }
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ShiftModifier) {
        selectionModel()->select(currentIndex(),
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        return;
    }
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !m_isRowMode) {
        MoveAfterEdit(0, event->modifiers() & Qt::ShiftModifier ? -1 : 1);
        return;
    }
    if (isEnter || event->key() == Qt::Key_Escape) {
        event->ignore(); // the form's
        return;
    }
    QTableView::keyPressEvent(event);
}

void SpreadGrid::keyboardSearch(const QString &search)
{
    // In a list to pick from a letter goes to its entry; elsewhere keys are for the cells.
    if (m_isRowMode)
        QTableView::keyboardSearch(search);
}

void SpreadGrid::mousePressEvent(QMouseEvent *event)
{
    if (FinishEdit())
        QTableView::mousePressEvent(event);
}

void SpreadGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableView::mouseDoubleClickEvent(event);
    const QModelIndex cell = indexAt(event->pos());
    if (cell.isValid() && event->button() == Qt::LeftButton)
        emit CellDoubleClicked(cell.column() + 1, cell.row() + 1);
}

void SpreadGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    emit CellLeft(previous.column() + 1, previous.row() + 1, current.column() + 1,
                  current.row() + 1);
}
