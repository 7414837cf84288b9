#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"

#include <deque>
#include <functional>
#include <variant>
#include <vector>

/// The one way by which the operator's changes go into the list, so that each can be taken back,
/// the last one first. Nothing is written to the database here.
///
/// What has been registered meanwhile, or was changed by somebody else, is not taken back: the list
/// then shows what the database has. Rows count from 1.
class LineEdits
{
public:
    explicit LineEdits(LineList &list)
        : m_list(list)
    {
    }

    /// Asked before each step for the rows that are selected: what a step selects leaves the
    /// selection with it.
    void SetSelection(std::function<RowSelection()> selected)
    {
        m_askSelected = std::move(selected);
    }

    /// All changes while it lives are taken back together; a step in a step is part of it.
    class Step
    {
    public:
        explicit Step(LineEdits &edits);
        ~Step();
        Step(const Step &) = delete;
        Step &operator=(const Step &) = delete;

    private:
        LineEdits &m_edits;
    };

    const LineList &List() const { return m_list; }

    // Changes. One that is made outside a step is a step of its own.

    void SetQuantity(int row, const Decimal &quantity);
    void SetDate(int row, const QString &storedForm);

    /// Puts splits below rows of the list as it is now, in one pass over the list; of several below
    /// one row the first stays the first. Returns their rows, in order.
    std::vector<int> InsertSplits(std::vector<LineList::Below> splits);

    /// Takes a row away: of a split that is not stored, which can come back, or of a line that the
    /// database has no more.
    void Remove(int row);

    /// What taking a step back has done.
    struct TakenBack
    {
        std::vector<int> rows; ///< that it touched and are there, as the list is now, in order
        std::vector<int> unselected; ///< of these, what was not selected before the step
        bool isAnything = false;     ///< there was a step of which something could be taken back
    };

    /// Takes back the last step of which something can be.
    TakenBack TakeBack();

    /// Forgets all steps: the list holds other lines.
    void Clear() { m_steps.clear(); }

private:
    struct AnswerBefore
    {
        LineId line;
        quint16 revision; ///< of the line, which a registration changes
        bool hasDateMark;
        bool isSelected;
        Answer answer;
    };
    using AnswersSet = std::vector<AnswerBefore>;
    struct SplitsInserted
    {
        std::vector<LineId> lines;
    };
    struct SplitRemoved
    {
        LineId above;
        bool isSelected;
        Line line;
    };
    using Change = std::variant<AnswersSet, SplitsInserted, SplitRemoved>;
    struct Touched
    {
        LineId line;
        bool wasSelected;
    };

    void Keep(int row);
    void DropOldSteps();
    void Undo(const AnswersSet &change, std::vector<Touched> &touched);
    void Undo(const SplitsInserted &change, std::vector<Touched> &touched);
    void Undo(const SplitRemoved &change, std::vector<Touched> &touched);

    LineList &m_list;
    std::deque<std::vector<Change>> m_steps;
    int m_openSteps = 0;
    std::function<RowSelection()> m_askSelected;
    RowSelection m_selected; ///< before the step that is being taken
};
