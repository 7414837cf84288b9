#include "grid/CellAccessible.h"

#include "grid/GridAccessible.h"
#include "grid/GridView.h"

#include <QHeaderView>
#include <QInputMethodEvent>

namespace {

/// For one who hears it: in one line.
QString InOneLine(QString text)
{
    return text.replace('\n', ' ').trimmed();
}

} // namespace

QWindow *GridPart::window() const
{
    return m_grid ? m_grid->window()->windowHandle() : nullptr;
}

QAccessibleInterface *GridPart::parent() const
{
    return QAccessible::queryAccessibleInterface(m_grid);
}

QRect GridPart::rect() const
{
    if (!m_grid)
        return {};
    const QRect place = Place();
    return place.isEmpty() ? QRect() : QRect(m_grid->mapToGlobal(place.topLeft()), place.size());
}

QAccessible::State GridPart::state() const
{
    QAccessible::State state;
    state.invalid = !m_grid;
    if (!m_grid)
        return state;
    state.disabled = !m_grid->isEnabled();
    state.readOnly = true;
    state.invisible = state.offscreen = Place().isEmpty();
    return state;
}

void GridPart::Remember()
{
    m_toldName = text(QAccessible::Name);
    const QAccessibleTextInterface *content = textInterface();
    m_toldText = content ? content->text(0, content->characterCount()) : QString();
}

void GridPart::TellChange()
{
    const QString name = m_toldName;
    const QString text = m_toldText;
    Remember();
    if (m_toldText != text) {
        QAccessibleTextUpdateEvent event(this, 0, text, m_toldText);
        QAccessible::updateAccessibility(&event);
    }
    if (m_toldName != name) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

QAccessible::Role HeadingAccessible::role() const
{
    return m_row < 0 ? QAccessible::ColumnHeader : QAccessible::RowHeader;
}

QString HeadingAccessible::text(QAccessible::Text kind) const
{
    if (!m_grid)
        return {};
    const auto words = [this](int role) {
        return m_grid->model()
            ->headerData(m_row < 0 ? m_column : m_row, m_row < 0 ? Qt::Horizontal : Qt::Vertical,
                         role)
            .toString();
    };
    switch (kind) {
    case QAccessible::Name: {
        const QString name = words(Qt::AccessibleTextRole);
        return InOneLine(name.isEmpty() ? words(Qt::DisplayRole) : name);
    }
    case QAccessible::Description: {
        const QString description = words(Qt::AccessibleDescriptionRole);
        return InOneLine(description.isEmpty() ? words(Qt::ToolTipRole) : description);
    }
    default:
        return {};
    }
}

QRect HeadingAccessible::Place() const
{
    const QHeaderView *header = m_row < 0 ? m_grid->horizontalHeader() : m_grid->verticalHeader();
    const int section = m_row < 0 ? m_column : m_row;
    const int start = header->sectionViewportPosition(section);
    const int size = header->sectionSize(section);
    const QRect place = m_row < 0 ? QRect(start, 0, size, header->height())
                                  : QRect(0, start, header->width(), size);
    if (!header->isVisible() || size == 0 || !header->viewport()->rect().intersects(place))
        return {};
    return place.translated(header->viewport()->mapTo(m_grid, QPoint()));
}

QModelIndex CellAccessible::Index() const
{
    return m_grid ? m_grid->model()->index(m_row, m_column) : QModelIndex();
}

bool CellAccessible::IsEditable() const
{
    return Index().flags().testFlag(Qt::ItemIsEditable) && Index().isValid();
}

QLineEdit *CellAccessible::Editor() const
{
    return m_grid ? m_grid->EditorOf(Index()) : nullptr;
}

QRect CellAccessible::Place() const
{
    const QRect place = m_grid->visualRect(Index());
    if (!m_grid->viewport()->isVisible() || !m_grid->viewport()->rect().intersects(place))
        return {};
    return place.translated(m_grid->viewport()->mapTo(m_grid, QPoint()));
}

QString CellAccessible::Content() const
{
    const QVariant spoken = Index().data(Qt::AccessibleTextRole);
    return spoken.isNull() ? Index().data().toString() : spoken.toString();
}

QString CellAccessible::text(QAccessible::Text kind) const
{
    const QString state = Index().data(Qt::AccessibleDescriptionRole).toString();
    const QString content = InOneLine(Content());
    switch (kind) {
    case QAccessible::Name:
        if (state.isEmpty() || content.contains(state))
            return content;
        return content.isEmpty() ? state : content + "、" + state;
    case QAccessible::Description:
        return state;
    case QAccessible::Value:
        return text(0, characterCount());
    default:
        return {};
    }
}

void CellAccessible::setText(QAccessible::Text kind, const QString &text)
{
    if (kind == QAccessible::Value)
        replaceText(0, characterCount(), text);
}

QAccessible::State CellAccessible::state() const
{
    QAccessible::State state = GridPart::state();
    if (!m_grid)
        return state;
    state.selectable = state.focusable = true;
    state.selected = isSelected();
    state.focused = Index() == m_grid->currentIndex() && (m_grid->hasFocus() || Editor());
    state.editable = IsEditable();
    state.readOnly = !state.editable;
    state.multiLine = Content().contains('\n');
    return state;
}

void *CellAccessible::interface_cast(QAccessible::InterfaceType type)
{
    switch (type) {
    case QAccessible::TableCellInterface:
        return static_cast<QAccessibleTableCellInterface *>(this);
    case QAccessible::TextInterface:
        return static_cast<QAccessibleTextInterface *>(this);
    case QAccessible::EditableTextInterface:
        return IsEditable() ? static_cast<QAccessibleEditableTextInterface *>(this) : nullptr;
    case QAccessible::ActionInterface:
        return static_cast<QAccessibleActionInterface *>(this);
    default:
        return nullptr;
    }
}

bool CellAccessible::isSelected() const
{
    return m_grid && m_grid->IsRowSelected(m_row + 1);
}

QList<QAccessibleInterface *> CellAccessible::columnHeaderCells() const
{
    const auto *table = static_cast<const GridAccessible *>(parent());
    return table ? table->ColumnHeadings(m_column) : QList<QAccessibleInterface *>();
}

QList<QAccessibleInterface *> CellAccessible::rowHeaderCells() const
{
    const auto *table = static_cast<const GridAccessible *>(parent());
    return table ? table->RowHeadings(m_row) : QList<QAccessibleInterface *>();
}

void CellAccessible::selection(int, int *start, int *end) const
{
    const QLineEdit *editor = selectionCount() > 0 ? Editor() : nullptr;
    *start = editor ? editor->selectionStart() : 0;
    *end = editor ? editor->selectionEnd() : 0;
}

int CellAccessible::selectionCount() const
{
    return Editor() && Editor()->hasSelectedText() ? 1 : 0;
}

void CellAccessible::removeSelection(int)
{
    if (Editor())
        Editor()->deselect();
}

void CellAccessible::setSelection(int, int start, int end)
{
    if (Editor())
        Editor()->setSelection(start, end - start);
}

int CellAccessible::cursorPosition() const
{
    return Editor() ? Editor()->cursorPosition() : 0;
}

void CellAccessible::setCursorPosition(int position)
{
    if (Editor())
        Editor()->setCursorPosition(position);
}

QString CellAccessible::text(int start, int end) const
{
    const QString text = Editor() ? Editor()->text() : Content();
    return text.mid(start, (end < 0 ? int(text.size()) : end) - start);
}

int CellAccessible::characterCount() const
{
    return int(text(0, -1).size());
}

void CellAccessible::scrollToSubstring(int, int)
{
    if (m_grid && m_grid->IsWithinReach())
        m_grid->scrollTo(Index());
}

QString CellAccessible::attributes(int, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void CellAccessible::deleteText(int start, int end)
{
    Type(start, end, {});
}

void CellAccessible::insertText(int at, const QString &text)
{
    Type(at, at, text);
}

void CellAccessible::replaceText(int start, int end, const QString &text)
{
    const bool isWhole = start <= 0 && end >= characterCount();
    if (Type(start, end, text)
        && isWhole) // a box may come of it, which must not hold up the answer
        QMetaObject::invokeMethod(m_grid, &GridView::FinishEdit, Qt::QueuedConnection);
}

/// False when nothing is taken.
bool CellAccessible::Type(int start, int end, const QString &text)
{
    const bool wasInEdit = Editor();
    const int count = characterCount();
    QLineEdit *editor = m_grid ? m_grid->OpenEditor(Index()) : nullptr;
    if (!editor)
        return false;
    const auto place = [&](int offset) -> std::optional<int> {
        if (offset <= 0)
            return 0;
        if (offset >= count)
            return int(editor->text().size());
        return wasInEdit ? std::optional(offset) : std::nullopt;
    };
    const auto from = place(start);
    const auto to = place(end);
    if (!from || !to || *from > *to)
        return false;
    editor->setCursorPosition(*from);
    editor->setSelection(*from, *to - *from);
    const QString before = editor->text();
    if (text.isEmpty() && editor->hasSelectedText()) {
        editor->del();
    } else if (!text.isEmpty()) {
        QInputMethodEvent typed; // the editor's rules judge it
        typed.setCommitString(text);
        QCoreApplication::sendEvent(editor, &typed);
    }
    return editor->text() != before || !editor->hasSelectedText();
}

QStringList CellAccessible::actionNames() const
{
    return IsEditable() ? QStringList{setFocusAction(), pressAction()}
                        : QStringList{setFocusAction()};
}

void CellAccessible::doAction(const QString &name)
{
    if (!Index().isValid() || !m_grid->IsWithinReach() || !m_grid->FinishEdit())
        return;
    if (name == pressAction())
        m_grid->OpenEditor(Index());
    if (name != setFocusAction())
        return;
    m_grid->Activate(m_column + 1, m_row + 1);
    m_grid->setFocus();
}
