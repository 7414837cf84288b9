#pragma once

#include "grid/GridView.h"
#include "grid/SpreadModel.h"

/// The grid control that programs write texts into. Columns and rows count from 1; row 0 is the
/// headings. A cell outside of them is left out of whatever is asked for.
///
/// Programs work on it as on a pad: they set a current cell or a block and then read, write or act.
/// With block mode on, colours, locks and the actions on rows and texts go to the block, else to
/// the current cell.
class SpreadGrid : public GridView
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
    bool IsLocked(int column, int row) const;

    /// Makes cells combo boxes with these entries.
    void SetComboEntries(const QStringList &entries);
    QStringList ComboEntries() const; ///< of the current cell
    int ComboIndex() const;           ///< the entry that the current cell shows; -1: none
    void SetComboIndex(int index);    ///< nothing for a cell that is no combo box

    /// How the lines between the cells look: 0 none, 1 solid, 2 dotted.
    void SetLineStyle(int style);

    void SetColumnLook(int column, int width, Qt::Alignment alignment);

    const SpreadModel &Model() const { return m_model; }
    SpreadModel &Model() { return m_model; }

private:
    struct Cell
    {
        int column = 1;
        int row = 1;
    };
    struct Block
    {
        int column1 = 1, row1 = 1, column2 = 1, row2 = 1;
    };

    Block Target() const; ///< what actions go to, as far as it lies inside of the grid
    Block Inside(const Block &block) const;
    bool IsInside(int column, int row) const; ///< a cell or a heading
    const CellStyle *CurrentStyle() const;    ///< null outside of the grid
    void ClearBlockText(const Block &block);
    void CopyBlock(const Block &block);

    SpreadModel m_model;
    Cell m_current;
    Block m_block;
    Cell m_destination;
    bool m_isBlockMode = false;
};
