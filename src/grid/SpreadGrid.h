#pragma once

#include "grid/CellInput.h"
#include "grid/SpreadModel.h"

#include <QLineEdit>
#include <QPointer>
#include <QTableView>
#include <map>
#include <memory>
#include <utility>
#include <vector>

/// The grid control. Columns and rows count from 1; row 0 is the headings.
///
/// Programs work on it as on a pad: they set a current cell or a block and then read, write or act.
/// With block mode on, colours, locks and the actions on rows and texts go to the block, else to
/// the current cell.
///
/// The active cell is the one that keys go to; the selection is what the operator has marked by
/// mouse or keyboard. Ending an edit with Enter or Tab moves the active cell and leaves the
/// selection.
class SpreadGrid : public QTableView
{
    Q_OBJECT

public:
    enum class Action {
        ActivateCell, ///< makes the current cell the active cell, in view
        DeleteRows,
        InsertRow,
        ClearText,
        CopyBlock, ///< to the destination
        Draw,      ///< repaints the whole grid
    };

    explicit SpreadGrid(QWidget *parent = nullptr);

    int ColumnCount() const { return m_model.ColumnCount(); }
    void SetColumnCount(int count) { m_model.SetColumnCount(count); }
    int RowCount() const { return m_model.RowCount(); }
    void SetRowCount(int count) { m_model.SetRowCount(count); }

    int ActiveRow() const { return currentIndex().row() + 1; }       ///< 0: none
    int ActiveColumn() const { return currentIndex().column() + 1; } ///< 0: none

    void SetCurrentCell(int column, int row);
    QString Text() const; ///< of the current cell
    void SetText(const QString &text);

    void SetBlock(int column1, int row1, int column2, int row2);
    bool BlockMode() const { return m_isBlockMode; }
    void SetBlockMode(bool isOn) { m_isBlockMode = isOn; }
    void SetDestination(int column, int row) { m_destination = {column, row}; }

    /// Writes tab-separated cell texts into the block; rows are separated by CR LF only when the
    /// block has more than one row, else line breaks belong to the cells.
    void SetClip(const QString &text);

    void Perform(Action action);

    double RowHeight() const;
    void SetRowHeight(int row, double height);

    bool Redraw() const { return m_model.IsNotifying(); }
    void SetRedraw(bool isOn);

    void SetForeColor(QRgb color);
    void SetBackColor(QRgb color);
    void SetLock(bool isLocked);
    bool IsLocked(int column, int row) const { return m_model.Style(column, row).isLocked; }

    /// Makes cells combo boxes with these entries.
    void SetComboEntries(const QStringList &entries);
    QStringList ComboEntries() const; ///< of the current cell
    int ComboIndex() const;           ///< the entry that the current cell shows; -1: none
    void SetComboIndex(int index);

    bool IsRowSelected(int row) const;

    /// The selected rows as ranges (first, last), in order, none touching another.
    const std::vector<std::pair<int, int>> &SelectedRowRanges() const;

    /// How the lines between the cells look: 0 none, 1 solid, 2 dotted.
    void SetLineStyle(int style);

    /// For the form that owns the grid: columns that can be typed into, and how columns look.
    void SetColumnInput(int column, std::unique_ptr<CellInput> input);
    void SetColumnLook(int column, int width, Qt::Alignment alignment);
    void SetTextLines(int lines); ///< makes rows high enough for this many lines of text
    void SetRowMode(); ///< one whole row is selected at a time, as in a list to pick from

    /// Ends an edit as leaving the cell would. False when the text typed is not accepted: its
    /// message has been shown and the cell is still in edit.
    bool FinishEdit();
    void CancelEdit();
    bool IsEditing() const { return !m_editor.isNull(); }
    void keyboardSearch(const QString &search) override;

    /// The selected cells, or the active one, as tab-separated lines. Rows and columns between them
    /// that are not selected: rows are left out, cells stay empty.
    QString SelectedText() const;

    const SpreadModel &Model() const { return m_model; }
    SpreadModel &Model() { return m_model; }

signals:
    void CellChanged(int column, int row); ///< the operator changed the cell's text
    void CellLeft(int column, int row, int newColumn, int newRow);
    void CellDoubleClicked(int column, int row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    friend class CellDelegate;

    struct Cell
    {
        int column = 1;
        int row = 1;
    };
    struct Block
    {
        int column1 = 1, row1 = 1, column2 = 1, row2 = 1;
    };

    Block Target() const;
    QLineEdit *BeginEdit(QWidget *parent, const QModelIndex &index);
    bool HandleEditorKey(QKeyEvent *event);
    void FinishLeftEdit(); ///< once the focus has gone elsewhere
    void MoveAfterEdit(int columns, int rows);
    void ClearBlockText(const Block &block);
    void CopyBlock(const Block &block);

    SpreadModel m_model;
    Cell m_current;
    Block m_block;
    Cell m_destination;
    bool m_isBlockMode = false;
    bool m_isRowMode = false;
    std::map<int, std::unique_ptr<CellInput>> m_inputs;
    QPointer<QLineEdit> m_editor;
    QPersistentModelIndex m_editedCell;
    QString m_typedBefore; ///< the editor's text when the edit began
    bool m_isFinishing = false;
    mutable std::vector<std::pair<int, int>> m_selectedRows;
    mutable bool m_isSelectionKnown = false;
};
