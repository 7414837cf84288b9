#pragma once

#include <QAccessible>
#include <QPointer>
#include <optional>

class GridView;
class QLineEdit;

/// A cell or a heading of a grid, as a screen reader knows it. Rows and columns count from 0, -1
/// for headings. One whose row has left the grid stays as an invalid object until its holder has
/// had the time to see that.
class GridPart : public QAccessibleInterface
{
public:
    GridPart(GridView *grid, int row, int column)
        : m_grid(grid)
        , m_row(row)
        , m_column(column)
    {
    }

    void Leave() { m_grid = nullptr; } ///< the place that it stands for is another one now
    void TellChange();                 ///< when it says something else than it has told last
    void Remember();                   ///< what it says now is known

    bool isValid() const override { return !m_grid.isNull(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override; ///< empty for one that is not on the screen
    QAccessible::State state() const override;

    int Row() const { return m_row; }
    int Column() const { return m_column; }

protected:
    /// Within the grid; empty for what is not in view.
    virtual QRect Place() const = 0;

    QPointer<GridView> m_grid;
    const int m_row;
    const int m_column;

private:
    QString m_toldName;
    QString m_toldText;
};

/// The heading of a column or of a row.
class HeadingAccessible : public GridPart
{
public:
    using GridPart::GridPart;

    QString text(QAccessible::Text kind) const override;
    QAccessible::Role role() const override;

private:
    QRect Place() const override;
};

/// A cell. Its name is what it shows and, in words, what its row's colours say; its text is what it
/// shows alone, or what stands in its editor. To set the text is to type it and enter it; to insert
/// or delete is to type, and leaves the editor open. Its rules hold for either. A part of a text
/// can be changed while the editor is open only, because it holds another form than the cell shows.
class CellAccessible : public GridPart,
                       public QAccessibleTableCellInterface,
                       public QAccessibleTextInterface,
                       public QAccessibleEditableTextInterface,
                       public QAccessibleActionInterface
{
public:
    using GridPart::GridPart;

    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString &text) override;
    QAccessible::Role role() const override { return QAccessible::Cell; }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    bool isSelected() const override;
    QList<QAccessibleInterface *> columnHeaderCells() const override;
    QList<QAccessibleInterface *> rowHeaderCells() const override;
    int columnIndex() const override { return m_column; }
    int rowIndex() const override { return m_row; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

    void selection(int number, int *start, int *end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int number) override;
    void setSelection(int number, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    int characterCount() const override;
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint &) const override { return -1; }
    void scrollToSubstring(int, int) override;
    QString attributes(int, int *start, int *end) const override;

    void deleteText(int start, int end) override;
    void insertText(int at, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QRect Place() const override;
    QModelIndex Index() const;
    bool IsEditable() const;
    QLineEdit *Editor() const; ///< null when the cell is not in edit
    QString Content() const;
    bool Type(int start, int end, const QString &text);
};
