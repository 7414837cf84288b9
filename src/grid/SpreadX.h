#pragma once

#include <QObject>
#include <QRgb>
#include <QString>
#include <array>
#include <optional>
#include <vector>

class SpreadGrid;

/// Lays named items over the rows and cells of a grid control, and keeps the grid's row count, row
/// heights and multi-line cells consistent. A logical row is one grid row; a cell holds up to three
/// items as lines joined by CR. Errors are shown to the operator and change nothing.
class SpreadX
{
public:
    /// Attaches the control; a control that is no grid is refused with a message.
    void Create(QObject *control);
    SpreadGrid *Client() const { return m_grid; }

    double LineHeight() const { return m_lineHeight; }
    void SetLineHeight(double height);
    int Lines() const { return m_lines; }
    int MinLines() const { return m_minLines; }
    void SetMinLines(int count); ///< a negative count is ignored
    int ItemCount() const { return m_itemCount; }

    /// Inserts a logical row at `row` (nothing: at the end) filled with tab-separated cell texts.
    void AddItem(const QString &text, std::optional<int> row = std::nullopt);
    void UpdateItem(const QString &text, int row);
    void RemoveItem(int row); ///< a row out of range is ignored without a message

    /// Empties the grid back to MinLines rows and clears the text of a block; negative bounds stand
    /// for the whole range.
    void Clear(int column1, int column2, int row1, int row2);

    void ActiveCell(int row, int column);
    void DrawGrid(int lineStyle, QRgb); ///< the lines keep the colour that the desktop gives them
    void SetForeColor(QRgb color, int row, int column);
    void SetBackColor(QRgb color, int row, int column);

    /// Selects the entry equal to `text` in a combo-box cell, none when there is no such entry.
    void SetComboFindIndex(int column, int row, const QString &text);

    void GetValue(int column, int row, QString &value) const;
    void SetValue(int column, int row, const QString &value);

    /// Negative bounds stand for the whole range.
    void SetLockCell(bool isLocked, int column1 = -1, int row1 = -1, int column2 = -1,
                     int row2 = -1);

    /// Copies the active logical row to a new row below it and makes that the active one.
    void CopyItem();

    /// Inserts an empty logical row at `row` (nothing: at the end); `newRow` receives its number.
    void AddNewRow(std::optional<int> row, int &newRow);

    /// Declares the item names: lines joined by CR (three at most), names by tabs or ";". Writes
    /// them as the headings.
    bool InitRowLayout(const QString &layout);

    // Where an item stands. An unknown name (compared without case) shows a message and gives 0.
    void GetItemPosAtRow(const QString &name, int &column, int &line) const;
    int GetColPosAtRow(const QString &name) const;
    int GetLinePosAtRow(const QString &name) const;
    void GetItemNameAtRow(int column, int line, QString &name) const;

    // Items of a logical row; no row given stands for the active one.
    void GetItemFromRow(const QString &name, std::optional<int> row, QString &value) const;
    void SetItemIntoRow(const QString &name, std::optional<int> row, const QString &value);

    /// All cell texts of a row, joined by tabs; and back, separated by tabs or ";".
    QString GetAllItemsFromRow(int row) const;
    void SetAllItemsIntoRow(int row, const QString &text);
    void AddMultilineRow(const QString &text, std::optional<int> row = std::nullopt);

    /// The first and last selected rows; `ok` is False when none is.
    void SelRange(int &first, int &last, bool &ok) const;

private:
    static constexpr int MaxLines = 3;

    bool CheckComponent() const;
    static void ShowError(const QString &message);
    bool CheckRow(int row) const; ///< that it holds items; else a message

    /// The row that is meant, and where the item stands in it; False after a message.
    bool FindItem(const QString &name, std::optional<int> row, int &itemRow, int &column,
                  int &line) const;
    bool IsItemRow(int row) const { return row >= 1 && row <= m_itemCount; }
    void SelectRow(int row);
    void ClearRowText(int row);

    SpreadGrid *m_grid = nullptr;
    std::vector<std::array<QString, MaxLines>> m_names;
    int m_lines = 0;
    int m_itemCount = 0;
    int m_minLines = 0;
    double m_lineHeight = 0;
};
