#include "sheet/PastedBlock.h"

#include "sheet/CsvReader.h"
#include "sheet/SheetCells.h"
#include "util/bDate.h"

#include <QStringList>
#include <algorithm>

namespace {

/// A grid's own copied cells hold dates as it shows them.
std::optional<QString> PastedDate(const QString &plain)
{
    return IsTypedOrShownDate(plain) ? StoredDate(plain) : DateOfCell(plain);
}

} // namespace

PastePlan PlanPaste(const QString &text, const LineList &list, std::span<const int> rows,
                    std::span<const PasteColumn> columns)
{
    PastePlan plan;
    int blockRow = 0;
    ReadCsv(text, u'\t', [&](const CsvRecord &record) {
        ++blockRow;
        if (size_t(blockRow) > rows.size()) {
            plan.rowsBeyond += std::ranges::any_of(
                record.cells, [](QStringView cell) { return !PlainCell(cell).isEmpty(); });
            return true;
        }
        const int row = rows[size_t(blockRow - 1)];
        plan.hiddenRows = row - rows.front() + 1 - blockRow;
        for (size_t at = 0; at < record.cells.size(); ++at) {
            const QString plain = PlainCell(record.cells[at]);
            if (plain.isEmpty())
                continue;
            const PasteColumn column = at < columns.size() ? columns[at] : PasteColumn::Locked;
            if (column == PasteColumn::Locked || list.At(row).IsShipped()) {
                ++plan.locked;
                continue;
            }
            const auto quantity = QuantityOfCell(plain);
            const auto date = PastedDate(plain);
            if (column == PasteColumn::Quantity ? !quantity : !date)
                plan.wrong.push_back({blockRow, int(at) + 1, plain});
            else
                plan.cells.push_back(
                    {row, column, {date.value_or(QString()), quantity.value_or(Decimal())}});
        }
        return true;
    });
    return plan;
}

RowSelection Paste(const PastePlan &plan, LineEdits &edits)
{
    const LineEdits::Step step(edits);
    std::vector<RowSelection::Range> rows;
    for (const PastePlan::Cell &cell : plan.cells) {
        const Answer before = edits.List().At(cell.row).Now();
        if (cell.column == PasteColumn::Quantity)
            edits.SetQuantity(cell.row, cell.answer.quantity);
        else
            edits.SetDate(cell.row, cell.answer.date);
        if (edits.List().At(cell.row).Now() != before)
            rows.emplace_back(cell.row, cell.row);
    }
    return RowSelection(std::move(rows));
}

QString PasteText(const PastePlan &plan)
{
    constexpr size_t MostNamed = 10;
    if (plan.IsGood()) {
        QString text = QString("%1 個のセルに貼り付けました").arg(plan.cells.size());
        if (plan.locked > 0)
            text += QString("　入力できない %1 個のセルは飛ばしました").arg(plan.locked);
        if (plan.hiddenRows > 0)
            text += QString("　表示していない %1 行は飛ばしました").arg(plan.hiddenRows);
        return text;
    }
    QStringList lines;
    if (plan.rowsBeyond > 0)
        lines += QString("一覧の最後の行より %1 行多くあります").arg(plan.rowsBeyond);
    for (size_t at = 0; at < std::min(plan.wrong.size(), MostNamed); ++at)
        lines += QString("%1 行目 %2 列目「%3」")
                     .arg(plan.wrong[at].blockRow)
                     .arg(plan.wrong[at].blockColumn)
                     .arg(plan.wrong[at].text);
    if (plan.wrong.size() > MostNamed)
        lines += QString("ほか %1 個").arg(plan.wrong.size() - MostNamed);
    return "貼り付けられません。一覧は変えていません\r" + lines.join('\r');
}
