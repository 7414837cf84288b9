#pragma once

#include "answerlist/ListRow.h"
#include "answerlist/OrderIndex.h"
#include "grid/SpreadX.h"

class SpreadGrid;

/// The answer list's grid as delivery lines: the working state of the list, from loading to the
/// creation of the answers. Rows count from 1.
class AnswerList
{
public:
    /// Binds the grid control and gives it the list's columns and headings.
    void Create(SpreadGrid *grid);
    SpreadGrid *Grid() const { return m_spread.Client(); }

    int RowCount() const { return m_spread.ItemCount(); }
    int ActiveRow() const;
    ListRow Row(int row) const;

    bool IsSelected(int row) const;
    int SelectedRowCount() const;

    void SetCell(int row, ListColumn column, const QString &text);

    /// Gives the row an answered date (shown form) and the mark that goes with it.
    void SetAnswerDate(int row, const QString &shownDate);

    void Clear();
    void Append(const ListLine &line, bool isDefective);

    /// Adds a row below `row`, in its colour.
    void InsertBelow(int row, const QString &rowText);
    void Remove(int row);

    /// Makes the row the active one, in view.
    void Activate(int row);
    bool IsDefective(int row) const;
    bool IsLocked(int row) const; ///< a shipped row is

    /// The rows of an order, in order.
    std::vector<int> RowsOfOrder(qint64 accNo) const;

    // For long runs: nothing is painted while redraw is off.
    void SetRedraw(bool isOn);

private:
    SpreadX m_spread;
    mutable OrderIndex m_index;
    mutable bool m_isIndexed = false; ///< the index is made when first asked for
};
