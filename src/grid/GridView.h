#pragma once

#include "grid/CellInput.h"

#include <QLineEdit>
#include <QPointer>
#include <QTableView>
#include <map>
#include <memory>
#include <utility>
#include <vector>

class GridAccessible;

/// A table that the operator types into. Columns and rows count from 1.
///
/// The active cell is the one that keys go to; the selection is the rows that the operator has
/// marked by mouse or keyboard. Ending an edit moves the active cell and leaves the selection. The
/// model gives and takes the texts of an edit under Qt::EditRole, in typed form, and tells by its
/// flags which cells can be typed into.
class GridView : public QTableView
{
    Q_OBJECT

public:
    using RowRange = std::pair<int, int>; ///< first and last

    /// The model's word that a cell has to be mended: Enter on it begins an edit.
    static constexpr int MendRole = Qt::UserRole;

    explicit GridView(QWidget *parent = nullptr);
    void setModel(QAbstractItemModel *model) override;

    int ActiveRow() const { return currentIndex().row() + 1; }       ///< 0: none
    int ActiveColumn() const { return currentIndex().column() + 1; } ///< 0: none

    /// Makes a cell the active one, in view; the selection stays (in a list to pick from: goes with
    /// it).
    void Activate(int column, int row);

    /// The selected rows as ranges, in order, none touching another.
    const std::vector<RowRange> &SelectedRowRanges() const;
    bool IsRowSelected(int row) const;
    void SetSelectedRows(const std::vector<RowRange> &ranges);

    /// Whether the selection is only of the row that a key without Shift or Ctrl has led to, and
    /// nobody has said since that it is meant.
    bool IsSelectionMovedTo() const { return m_isSelectionMovedTo; }
    void MeanSelection() { m_isSelectionMovedTo = false; }

    /// For the form that owns the grid: how columns are typed, how they look, and how many lines of
    /// text a row has room for.
    void SetColumnInput(int column, std::unique_ptr<CellInput> input);
    void SetColumnWidth(int column, int width); ///< 0 hides the column
    void SetTextLines(int lines);
    void SetRowMode(); ///< one whole row is selected at a time, as in a list to pick from

    /// Ends an edit as leaving the cell would. False when the text typed is not accepted: its
    /// message has been shown and the cell is still in edit.
    bool FinishEdit();
    void CancelEdit();
    bool IsEditing() const { return !m_editor.isNull(); }

    // For a screen reader, which does what hands do but comes by another way.

    /// Whether hands could do something here: no box stands before the grid, and no long work runs.
    bool IsWithinReach() const;

    /// Begins to edit a cell, or goes on to. Null where it can't be typed into, or not now.
    QLineEdit *OpenEditor(const QModelIndex &cell);
    QLineEdit *EditorOf(const QModelIndex &cell) const; ///< null when the cell is not in edit

    void keyboardSearch(const QString &search) override;

    /// The selected rows below the headings, as tab-separated lines for the clipboard; without
    /// any, the active cell.
    QString SelectedText() const;

signals:
    void CellLeft(int column, int row, int newColumn, int newRow);
    void CellDoubleClicked(int column, int row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void focusInEvent(QFocusEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    friend class CellDelegate;
    friend class GridAccessible;

    QLineEdit *BeginEdit(QWidget *parent, const QModelIndex &index);
    bool HandleEditorKey(QKeyEvent *event);
    void FinishLeftEdit(); ///< once the focus has gone elsewhere
    bool Move(int columns, int rows);
    bool IsEditable(int column, int row) const;
    QModelIndex Index(int column, int row) const;

    bool m_isRowMode = false;
    std::map<int, std::unique_ptr<CellInput>> m_inputs;
    QPointer<QLineEdit> m_editor;
    QPersistentModelIndex m_editedCell;
    QString m_typedBefore; ///< the editor's text when the edit began
    bool m_isFinishing = false;
    QPersistentModelIndex m_anchor; ///< where Shift selects from
    bool m_isExtending = false;
    bool m_isMoving = false; ///< by a key that takes the selection along
    bool m_isSelectionMovedTo = false;
    mutable std::vector<RowRange> m_selectedRows;
    mutable bool m_isSelectionKnown = false;
    GridAccessible *m_accessible = nullptr; ///< once it has been asked for
};
