#pragma once

#include "answerlist/LineModel.h"
#include "grid/GridView.h"
#include "platform/LongWork.h"
#include "sheet/PastedBlock.h"

class LineFind;

/// The answer list's grid. It speaks in rows of the list, whatever lines are hidden, fits its
/// columns to their texts, and finds texts.
class LineGrid : public GridView
{
    Q_OBJECT

public:
    explicit LineGrid(QWidget *parent = nullptr);

    void SetLines(LineModel &lines); ///< before anything else

    RowSelection Selected() const;

    /// The rows that a command is for: the selected ones; but right after a search the one that was
    /// found, until the frame leaves it or the selection changes.
    RowSelection Meant() const;
    void Select(const RowSelection &lineRows); ///< of these, what is shown
    void selectAll() override;

    /// Adds rows that have been changed, which are meant; a row that a key has only passed by, and
    /// that has no answer to be sent, is not, and leaves the selection.
    void SelectToo(const RowSelection &lineRows);
    int ActiveLine() const; ///< 0: none

    /// Makes a cell of a shown line the active one, in view; 0 for the column: that which is.
    void GoTo(int column, int lineRow);

    /// Shows the list as `change` leaves it, with the same lines selected and active as far as they
    /// are shown then; for an active one that is hidden the next one is.
    template <typename Change>
    void Rearrange(Change &&change)
    {
        const Place place = KeepPlace();
        change();
        m_lines->Filled();
        RestorePlace(place);
    }

    /// Goes on to the next shown line that holds the text, round the end of the list.
    enum class Found { No, Yes, AfterTheEnd, Stopped };
    Found Find(const LineFind &wanted, bool isForward, const ShowStatusText &showStatus);

    /// Lays a block from a spreadsheet over the shown cells, from the active one on.
    PastePlan PlanPaste(const QString &text, const LineList &list) const;

    /// Gives the columns the widths that their texts take, as long as the operator has not given
    /// them others.
    void FitColumns();
    void FitColumnsAgain(); ///< whatever the operator has given them

signals:
    void ColumnsFitted();

protected:
    void changeEvent(QEvent *event) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Place
    {
        std::vector<LineId> selected;
        LineId active = 0;
        int activeRow = 0; ///< as shown
        int column = 1;
        int top = 0;
    };

    void TakeFont();
    Place KeepPlace() const;
    void RestorePlace(const Place &place);

    LineModel *m_lines = nullptr;
    bool m_isFound = false;   ///< the active row, right after a search
    bool m_isFitting = false; ///< who else resizes a column is the operator
    bool m_areColumnsFitted = true;
};
