#pragma once

#include "grid/CellAccessible.h"

#include <QAccessibleWidget>
#include <map>
#include <vector>

class QItemSelection;

/// A grid as a screen reader knows it: a table whose children are the headings and cells that are
/// on the screen, however many rows there are, and the editor of a cell. The others are made when
/// they are asked for by row and column, and say that they are not in view.
class GridAccessible : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit GridAccessible(GridView *grid);
    ~GridAccessible() override;

    /// Has grids made known in this way from now on.
    static void Install();

    // What a grid tells, when there is somebody to listen.
    static void TellActiveCell(GridView &grid);
    static void TellSelection(GridView &grid, const QItemSelection &selected,
                              const QItemSelection &deselected);

    /// Rows have come or gone: every part may stand for another one now.
    static void TellRows(GridView &grid);

    QList<QAccessibleInterface *> ColumnHeadings(int column) const; ///< one, or none
    QList<QAccessibleInterface *> RowHeadings(int row) const;       ///< one, or none

    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;
    QAccessibleInterface *focusChild() const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override;
    int selectedCellCount() const override;
    QList<QAccessibleInterface *> selectedCells() const override; ///< those on the screen
    QString columnDescription(int column) const override;
    QString rowDescription(int row) const override;
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override;
    int columnCount() const override;
    int rowCount() const override;
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool selectColumn(int) override { return false; }
    bool unselectRow(int row) override;
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *event) override;

private:
    /// What is on the screen.
    struct Shown
    {
        std::vector<int> columns;
        int firstRow = 0;
        int rows = 0;
        bool hasRowHeadings = false;

        int PerRow() const { return int(columns.size()) + (hasRowHeadings ? 1 : 0); }
        int Count() const { return int(columns.size()) + rows * PerRow(); }
    };

    GridView *Grid() const;
    static GridAccessible *Listening(GridView &grid); ///< null when nobody listens
    Shown OnScreen() const;
    QAccessibleInterface *Part(int row, int column) const; ///< -1 for headings
    bool ChangeSelection(int row, bool isSelected);
    void Forget() const; ///< lets go of all parts
    void ForgetHidden() const;
    static GridPart *Known(QAccessible::Id part);
    static void LetGo(QAccessible::Id part);

    mutable std::map<std::pair<int, int>, QAccessible::Id> m_parts; ///< by row and column
    mutable CellAccessible m_noCell;
};
