#include "lines/LineEdits.h"

#include <algorithm>

namespace {

constexpr size_t MostSteps = 100;
constexpr size_t MostAnswers = 2'000'000; // kept beside those of the last step

} // namespace

LineEdits::Step::Step(LineEdits &edits)
    : m_edits(edits)
{
    if (m_edits.m_openSteps++ > 0)
        return;
    if (m_edits.m_askSelected)
        m_edits.m_selected = m_edits.m_askSelected();
    m_edits.m_steps.emplace_back();
}

LineEdits::Step::~Step()
{
    if (--m_edits.m_openSteps > 0)
        return;
    if (m_edits.m_steps.back().empty())
        m_edits.m_steps.pop_back();
    m_edits.DropOldSteps();
}

void LineEdits::DropOldSteps()
{
    size_t answers = 0;
    size_t kept = 0;
    for (auto step = m_steps.rbegin(); step != m_steps.rend(); ++step, ++kept) {
        if (kept == MostSteps || answers > MostAnswers)
            break;
        for (const Change &change : *step)
            if (const auto *set = std::get_if<AnswersSet>(&change))
                answers += set->size();
    }
    m_steps.erase(m_steps.begin(), m_steps.end() - std::ptrdiff_t(kept));
}

void LineEdits::Keep(int row)
{
    std::vector<Change> &changes = m_steps.back();
    if (changes.empty() || !std::holds_alternative<AnswersSet>(changes.back()))
        changes.emplace_back(AnswersSet());
    const Line &line = m_list.At(row);
    std::get<AnswersSet>(changes.back())
        .push_back(
            {line.Id(), line.Revision(), line.HasDateMark(), m_selected.Contains(row), line.Now()});
}

void LineEdits::SetQuantity(int row, const Decimal &quantity)
{
    const Step step(*this);
    Line &line = m_list.At(row);
    if (quantity != line.Now().quantity)
        Keep(row);
    line.SetQuantity(quantity);
    m_list.ForgetSumErrors(line.Key().accNo);
}

void LineEdits::SetDate(int row, const QString &storedForm)
{
    const Step step(*this);
    Line &line = m_list.At(row);
    if (storedForm != line.Now().date || line.HasDateMark() == line.IsSpecifiedDate(storedForm))
        Keep(row);
    line.SetDate(storedForm);
}

std::vector<int> LineEdits::InsertSplits(std::vector<LineList::Below> splits)
{
    if (splits.empty())
        return {};
    const Step step(*this);
    const std::vector<int> rows = m_list.InsertBelow(std::move(splits));
    SplitsInserted inserted;
    for (const int row : rows)
        inserted.lines.push_back(m_list.At(row).Id());
    m_steps.back().emplace_back(std::move(inserted));
    return rows;
}

void LineEdits::Remove(int row)
{
    if (!m_list.At(row).IsStored()) {
        const Step step(*this);
        const LineId above = row > 1 ? m_list.At(row - 1).Id() : LineId();
        m_steps.back().emplace_back(SplitRemoved{above, m_selected.Contains(row), m_list.At(row)});
    }
    m_list.Remove({row});
}

LineEdits::TakenBack LineEdits::TakeBack()
{
    std::vector<Touched> touched;
    TakenBack result;
    while (!m_steps.empty() && touched.empty()) {
        const std::vector<Change> step = std::move(m_steps.back());
        m_steps.pop_back();
        for (auto change = step.rbegin(); change != step.rend(); ++change)
            std::visit([&](const auto &kind) { Undo(kind, touched); }, *change);
    }
    result.isAnything = !touched.empty();
    const std::vector<int> rows = m_list.RowsById();
    for (const auto &[line, wasSelected] : touched) {
        const int row = rows[line];
        if (row > 0)
            result.rows.push_back(row);
        if (row > 0 && !wasSelected)
            result.unselected.push_back(row);
    }
    for (std::vector<int> *list : {&result.rows, &result.unselected}) {
        std::sort(list->begin(), list->end());
        list->erase(std::unique(list->begin(), list->end()), list->end());
    }
    return result;
}

void LineEdits::Undo(const AnswersSet &change, std::vector<Touched> &touched)
{
    const std::vector<int> rows = m_list.RowsById();
    // A cell that was set twice is in the end what it was before the first time.
    for (auto kept = change.rbegin(); kept != change.rend(); ++kept) {
        const int row = rows[kept->line];
        if (row == 0 || m_list.At(row).Revision() != kept->revision)
            continue;
        m_list.At(row).PutBack(kept->answer, kept->hasDateMark);
        m_list.ForgetSumErrors(m_list.At(row).Key().accNo);
        touched.push_back({kept->line, kept->isSelected});
    }
}

void LineEdits::Undo(const SplitsInserted &change, std::vector<Touched> &touched)
{
    const std::vector<int> rows = m_list.RowsById();
    std::vector<int> removed;
    for (const LineId line : change.lines) {
        const int row = rows[line];
        if (row == 0 || m_list.At(row).IsStored())
            continue;
        removed.push_back(row);
        touched.push_back({line, false});
    }
    m_list.Remove(std::move(removed));
}

void LineEdits::Undo(const SplitRemoved &change, std::vector<Touched> &touched)
{
    int above = change.above == LineId() ? 0 : m_list.RowsById()[change.above];
    if (above == 0 && change.above != LineId()) {
        // What it stood below is gone: it belongs to the rest of its order.
        const std::vector<int> order = m_list.RowsOfOrder(change.line.Key().accNo);
        above = order.empty() ? m_list.Count() : order.back();
    }
    m_list.InsertBelow({{above, change.line}});
    touched.push_back({change.line.Id(), change.isSelected});
}
