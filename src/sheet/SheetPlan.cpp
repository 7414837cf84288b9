#include "sheet/SheetPlan.h"

#include "sheet/SheetCells.h"
#include "util/bDate.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <unordered_set>

QString RefusalText(SheetRefusal refusal)
{
    switch (refusal) {
    case SheetRefusal::Broken:
        return "引用符（\"）の対応が正しくありません";
    case SheetRefusal::TooLong:
        return "見出しより列が多くあります";
    case SheetRefusal::NoKey:
        return "受注№・枝番・分納番号が数字ではありません";
    case SheetRefusal::NoSuchLine:
        return "この一覧にない明細です";
    case SheetRefusal::NoSuchSplit:
        return "出力した後に、登録または削除された分納です";
    case SheetRefusal::OtherOrder:
        return "注文№が明細と違います";
    case SheetRefusal::OtherLine:
        return "「出力時」の列が、ほかの明細のものです";
    case SheetRefusal::TwoRows:
        return "同じ明細の行がほかにもあります";
    case SheetRefusal::Shipped:
        return "出荷済です";
    case SheetRefusal::AnsweredSince:
        return "出力した後に、納期回答済になっています";
    case SheetRefusal::ChangedSince:
        return "出力した後に、回答が登録されています";
    case SheetRefusal::AnsweredBefore:
        return "納期回答済です（出力時の列がないので変更できません）";
    case SheetRefusal::NoDate:
        return "日付ではありません";
    case SheetRefusal::NoNumber:
        return "数量ではありません";
    case SheetRefusal::NoQuantity:
        return "分納の数量がありません";
    case SheetRefusal::MoreThanOpen:
        return "回答数量合計が、注残数を超えています";
    case SheetRefusal::None:
        break;
    }
    return {};
}

namespace {

/// A whole number of a plain cell that has room.
std::optional<qint64> WholeOfCell(const QString &plain, qint64 most)
{
    const auto number = NumberOfCell(plain);
    if (!number || *number != number->Truncated() || *number > Decimal(most))
        return std::nullopt;
    return number->ToText().toLongLong();
}

/// Two order numbers are the same although a spreadsheet has taken zeros off.
bool IsSameOrderNo(const QString &cell, const QString &orderNo)
{
    const auto significant = [](QStringView text) {
        while (text.startsWith(u'0'))
            text = text.sliced(1);
        return text;
    };
    const QString own = PlainCell(orderNo);
    return significant(cell).compare(significant(own), Qt::CaseInsensitive) == 0;
}

/// Whether a cell says no more than the date that was there, in its written form: LibreOffice shows
/// a date of a CSV file as "12月8日" to a Japanese user, and saves what it shows.
bool IsDateLeft(const QString &cell, const QString &written)
{
    if (WrittenWord(cell) == written)
        return true;
    const auto number = [&](int at) { return QString::number(written.mid(at, 2).toInt()); };
    return IsValidDate(written) && cell == number(4) + "月" + number(6) + "日";
}

class Planner
{
public:
    Planner(const Sheet &sheet, const LineList &list)
        : m_sheet(sheet)
        , m_list(list)
    {
    }

    SheetPlan Plan();

private:
    /// What a row of the file is about.
    struct Target
    {
        int row = 0; ///< of the list: the line, or the one that a split is of
        bool isSplit = false;
        std::optional<WrittenState> written; ///< of it, or of what its row was copied from
        SheetRefusal refusal = SheetRefusal::None;
    };

    Target TargetOf(const SheetRow &row);
    int SourceOf(const LineKey &subLine, const std::optional<WrittenState> &written) const;
    int UnstoredSplit(const WrittenState &written) const;
    void RefuseTwins();
    void Decide(const SheetRow &row, const Target &target);
    SheetRefusal AnswerOf(const SheetRow &row, const Target &target, Answer &answer,
                          QString &cell) const;
    SheetRefusal StateRefusal(const SheetRow &row, const Target &target) const;
    SheetRefusal SourceRefusal(const SheetRow &row, const Target &target) const;
    SheetRefusal SinceWritten(int row, const WrittenState &written) const;
    void RefuseTooMuch();
    void Refuse(const SheetRow &row, SheetRefusal refusal, const QString &cell = {});

    const Sheet &m_sheet;
    const LineList &m_list;
    SheetPlan m_plan;
    std::vector<Target> m_targets; ///< of each row
    std::vector<const SheetRow *> m_changeRows;
    std::vector<const SheetRow *> m_splitRows;
    int m_lastRow = 0; ///< of the list, that the row before was about
};

QString NameOf(const SheetRow &row)
{
    return row.accNo + '-' + row.accSubNo + '-' + row.shpSubNo;
}

void Planner::Refuse(const SheetRow &row, SheetRefusal refusal, const QString &cell)
{
    m_plan.refused.push_back({row.line, refusal, NameOf(row), cell});
}

/// The line that a new split is of: the one that its row was copied from, that of the row above, or
/// the last one.
int Planner::SourceOf(const LineKey &subLine, const std::optional<WrittenState> &written) const
{
    const auto isOfSubLine = [&](int row) {
        const LineKey &key = m_list.At(row).Key();
        return key.accNo == subLine.accNo && key.accSubNo == subLine.accSubNo;
    };
    if (written)
        if (const int row = m_list.RowOf(written->key); row > 0 && isOfSubLine(row))
            return row;
    if (m_lastRow > 0 && isOfSubLine(m_lastRow))
        return m_lastRow;
    int last = 0;
    for (const int row : m_list.RowsOfOrder(subLine.accNo))
        if (isOfSubLine(row))
            last = row;
    return last;
}

int Planner::UnstoredSplit(const WrittenState &written) const
{
    int number = 0;
    for (const int row : m_list.RowsOfOrder(written.key.accNo)) {
        const Line &line = m_list.At(row);
        if (!line.IsStored() && line.Source() == written.key && ++number == written.split)
            return row;
    }
    return 0;
}

Planner::Target Planner::TargetOf(const SheetRow &row)
{
    constexpr qint64 MostAccNo = std::numeric_limits<qint64>::max() / 10;
    constexpr qint64 MostSubNo = std::numeric_limits<int>::max();
    Target target;
    const auto refused = [&](SheetRefusal refusal) {
        target.refusal = refusal;
        return target;
    };
    if (row.isBroken)
        return refused(SheetRefusal::Broken);
    if (row.isTooLong)
        return refused(SheetRefusal::TooLong);
    const auto accNo = WholeOfCell(row.accNo, MostAccNo);
    const auto accSubNo = WholeOfCell(row.accSubNo, MostSubNo);
    const bool hasNumber = !row.shpSubNo.isEmpty();
    const auto shpSubNo = hasNumber ? WholeOfCell(row.shpSubNo, MostSubNo) : 0;
    if (!accNo || !accSubNo || !shpSubNo)
        return refused(SheetRefusal::NoKey);
    const LineKey key{*accNo, int(*accSubNo), int(*shpSubNo)};
    if (row.written)
        target.written = WrittenState::FromText(*row.written);
    const auto written = target.written;
    if (hasNumber) {
        target.row = m_list.RowOf(key);
        const bool isOfLine = written && written->split == 0 && written->key == key;
        // What was a line when the file was written is no new split.
        if (target.row == 0 && isOfLine)
            return refused(SheetRefusal::NoSuchLine);
        if (target.row > 0 && written && !isOfLine)
            return refused(SheetRefusal::OtherLine);
    }
    if (target.row == 0 && written) {
        if (written->key.accNo != key.accNo || written->key.accSubNo != key.accSubNo)
            return refused(SheetRefusal::OtherLine);
        if (written->split > 0) {
            target.row = UnstoredSplit(*written);
            if (target.row == 0)
                return refused(SheetRefusal::NoSuchSplit);
        }
    }
    if (target.row == 0) {
        target.isSplit = true;
        target.row = SourceOf(key, written);
    }
    if (target.row == 0)
        return refused(SheetRefusal::NoSuchLine);
    m_lastRow = target.row;
    if (row.orderNo && !row.orderNo->isEmpty()
        && !IsSameOrderNo(*row.orderNo, m_list.At(target.row).OrderNo()))
        return refused(SheetRefusal::OtherOrder);
    return target;
}

/// Of rows about the same line none is taken.
void Planner::RefuseTwins()
{
    std::vector<int> firstRows(size_t(m_list.Count()) + 1, -1);
    for (size_t at = 0; at < m_targets.size(); ++at) {
        Target &target = m_targets[at];
        if (target.isSplit || target.row == 0 || target.refusal != SheetRefusal::None)
            continue;
        int &first = firstRows[size_t(target.row)];
        if (first < 0) {
            first = int(at);
            continue;
        }
        target.refusal = m_targets[size_t(first)].refusal = SheetRefusal::TwoRows;
    }
}

/// Where a file does not tell what it was written with.
SheetRefusal UntoldRefusal(const SheetRow &row, const Line &line)
{
    if (!line.IsAnswered() || row.answered == QString(DoneText))
        return SheetRefusal::None;
    return row.answered ? SheetRefusal::AnsweredSince : SheetRefusal::AnsweredBefore;
}

SheetRefusal Planner::SinceWritten(int row, const WrittenState &written) const
{
    const WrittenState now = WrittenState::Of(m_list, row);
    if (now.isAnswered && !written.isAnswered)
        return SheetRefusal::AnsweredSince;
    if (now.isAnswered != written.isAnswered || now.storedDate != written.storedDate
        || now.storedQuantity != written.storedQuantity)
        return SheetRefusal::ChangedSince;
    return SheetRefusal::None;
}

SheetRefusal Planner::StateRefusal(const SheetRow &row, const Target &target) const
{
    const Line &line = m_list.At(target.row);
    if (line.IsShipped())
        return SheetRefusal::Shipped;
    return target.written ? SinceWritten(target.row, *target.written) : UntoldRefusal(row, line);
}

/// A file that is taken once more, after its splits were registered, must not make them again. A
/// row that was typed and not copied tells of no line.
SheetRefusal Planner::SourceRefusal(const SheetRow &row, const Target &target) const
{
    const Line &line = m_list.At(target.row);
    if (!row.written)
        return UntoldRefusal(row, line);
    const bool isOfSource = target.written && line.IsStored() && target.written->key == line.Key();
    return isOfSource ? SinceWritten(target.row, *target.written) : SheetRefusal::None;
}

/// Puts into the answer what the row's cells say. `cell` is the one that says nothing of use.
SheetRefusal Planner::AnswerOf(const SheetRow &row, const Target &target, Answer &answer,
                               QString &cell) const
{
    const auto written = target.isSplit ? std::nullopt : target.written;
    const bool hasDate = row.date && (!written || !IsDateLeft(*row.date, written->shownDate));
    if (hasDate && !IsDateLeft(*row.date, WrittenWord(answer.date))) {
        const auto date = row.date->isEmpty() ? QString() : DateOfCell(*row.date);
        if (!date) {
            cell = *row.date;
            return SheetRefusal::NoDate;
        }
        if (!written || WrittenWord(*date) != written->shownDate)
            answer.date = *date;
    }
    if (!row.quantity || (written && *row.quantity == written->shownQuantity))
        return SheetRefusal::None;
    const auto quantity = QuantityOfCell(*row.quantity);
    if (!quantity) {
        cell = *row.quantity;
        return SheetRefusal::NoNumber;
    }
    if (!written || *quantity != Decimal::FromText(written->shownQuantity))
        answer.quantity = *quantity;
    return SheetRefusal::None;
}

void Planner::Decide(const SheetRow &row, const Target &target)
{
    if (target.refusal != SheetRefusal::None) {
        Refuse(row, target.refusal);
        return;
    }
    const Answer before = target.isSplit ? Answer() : m_list.At(target.row).Now();
    Answer after = before;
    QString cell;
    SheetRefusal refusal = AnswerOf(row, target, after, cell);
    if (target.isSplit) {
        const bool isEmpty = !row.quantity || row.quantity->isEmpty() || after.quantity.IsZero();
        if (isEmpty && refusal != SheetRefusal::NoDate)
            refusal = SheetRefusal::NoQuantity;
        if (const SheetRefusal state = SourceRefusal(row, target); state != SheetRefusal::None) {
            Refuse(row, state);
            return;
        }
        if (refusal != SheetRefusal::None) {
            Refuse(row, refusal, cell);
            return;
        }
        m_plan.splits.push_back({row.line, target.row, after});
        m_splitRows.push_back(&row);
        return;
    }
    if (refusal == SheetRefusal::None && after == before) {
        ++m_plan.unchanged;
        return;
    }
    if (const SheetRefusal state = StateRefusal(row, target); state != SheetRefusal::None) {
        Refuse(row, state);
        return;
    }
    if (refusal != SheetRefusal::None) {
        Refuse(row, refusal, cell);
        return;
    }
    m_plan.changes.push_back({row.line, target.row, before, after});
    m_changeRows.push_back(&row);
}

/// Refuses all rows of an order whose answers would be more than is open, as the check before the
/// output sees it: changed lines and new splits take part.
void Planner::RefuseTooMuch()
{
    constexpr int Decimals = 3;
    std::unordered_map<qint64, Decimal> sums; // of orders that get other quantities
    std::unordered_set<int> changedRows;
    const auto orderOf = [&](int row) { return m_list.At(row).Key().accNo; };
    for (const SheetPlan::Change &change : m_plan.changes)
        if (change.before.quantity != change.after.quantity)
            sums[orderOf(change.row)];
    for (const SheetPlan::Split &split : m_plan.splits)
        sums[orderOf(split.below)] += split.answer.quantity;
    for (const SheetPlan::Change &change : m_plan.changes) {
        const auto sum = sums.find(orderOf(change.row));
        if (sum == sums.end())
            continue;
        sum->second += change.after.quantity;
        changedRows.insert(change.row);
    }
    std::unordered_set<qint64> tooMuch;
    for (auto &[accNo, sum] : sums) {
        Decimal open;
        for (const int row : m_list.RowsOfOrder(accNo)) {
            const Line &line = m_list.At(row);
            open = line.OpenQuantity();
            const bool takesPart = !line.IsShipped() && (line.IsChanged() || !line.IsStored());
            if (takesPart && !changedRows.contains(row))
                sum += line.Now().quantity;
        }
        if (sum.Rounded(Decimals) > open.Rounded(Decimals))
            tooMuch.insert(accNo);
    }
    if (tooMuch.empty())
        return;
    const auto refuse = [&](auto &planned, const std::vector<const SheetRow *> &rows, auto rowOf) {
        size_t kept = 0;
        for (size_t at = 0; at < planned.size(); ++at) {
            if (tooMuch.contains(orderOf(rowOf(planned[at]))))
                Refuse(*rows[at], SheetRefusal::MoreThanOpen);
            else
                planned[kept++] = planned[at];
        }
        planned.resize(kept);
    };
    refuse(m_plan.changes, m_changeRows, [](const auto &change) { return change.row; });
    refuse(m_plan.splits, m_splitRows, [](const auto &split) { return split.below; });
    std::ranges::stable_sort(m_plan.refused, {}, &SheetPlan::Refused::fileLine);
}

SheetPlan Planner::Plan()
{
    m_targets.reserve(m_sheet.rows.size());
    bool isAnyKnown = false;
    for (const SheetRow &row : m_sheet.rows) {
        m_targets.push_back(TargetOf(row));
        isAnyKnown |= m_targets.back().row > 0;
    }
    m_plan.isOfAnotherList = !m_sheet.rows.empty() && !isAnyKnown;
    RefuseTwins();
    for (size_t at = 0; at < m_targets.size(); ++at)
        Decide(m_sheet.rows[at], m_targets[at]);
    RefuseTooMuch();
    return std::move(m_plan);
}

} // namespace

SheetPlan PlanSheet(const Sheet &sheet, const LineList &list)
{
    return Planner(sheet, list).Plan();
}

RowSelection TakeSheet(const SheetPlan &plan, LineEdits &edits)
{
    const LineEdits::Step step(edits);
    std::vector<LineId> changed;
    for (const SheetPlan::Change &change : plan.changes) {
        if (change.after.quantity != change.before.quantity)
            edits.SetQuantity(change.row, change.after.quantity);
        if (change.after.date != change.before.date)
            edits.SetDate(change.row, change.after.date);
        changed.push_back(edits.List().At(change.row).Id());
    }
    std::vector<LineList::Below> splits;
    for (const SheetPlan::Split &split : plan.splits) {
        Line line = edits.List().At(split.below).Split(split.answer.quantity);
        if (!split.answer.date.isEmpty())
            line.SetDate(split.answer.date);
        splits.push_back({split.below, line});
    }
    std::vector<RowSelection::Range> taken;
    for (const int row : edits.InsertSplits(std::move(splits)))
        taken.emplace_back(row, row);
    const std::vector<int> rows = edits.List().RowsById();
    for (const LineId line : changed)
        taken.emplace_back(rows[line], rows[line]);
    return RowSelection(std::move(taken));
}
