#include "BenchWindow.h"
#include "Benches.h"

#include "answerlist/AnswerDates.h"
#include "answerlist/LineSplit.h"
#include "answerlist/ListLoading.h"
#include "output/PreOutputChecks.h"

#include <memory>
#include <stdexcept>

namespace {

/// A list loaded with one customer's lines.
std::unique_ptr<BenchWindow> LoadedWindow(bDAO &db, int lines)
{
    auto window = std::make_unique<BenchWindow>();
    window->grid.SetRedraw(false);
    const LoadedList loaded = LoadList(db, BenchDatabase::CustomerOf(lines), window->list);
    if (loaded.lineCount != lines)
        throw std::runtime_error("the list has another number of lines");
    window->grid.SetRedraw(true);
    window->Paint();
    return window;
}

void BenchSetDates(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const auto window = LoadedWindow(db, sizes.list);
    window->grid.selectAll();
    results.push_back(CompareTimes(QString("date set for %L1 selected rows").arg(sizes.list), 3,
                                   {.run =
                                        [&] {
                                            window->list.SetRedraw(false);
                                            SetAnswerDates(window->list, "20270115");
                                            window->list.SetRedraw(true);
                                            window->Paint();
                                        }},
                                   {.run = [&] {
                                       window->list.SetRedraw(false);
                                       for (int row = 1; row <= window->list.RowCount(); ++row)
                                           window->list.SetCell(row, ListColumn::AnswerDate,
                                                                "27/01/15");
                                       window->list.SetRedraw(true);
                                       window->Paint();
                                   }}));
}

void BenchSplit(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const auto splitOnce = [](BenchWindow &window) {
        window.list.SetRedraw(false);
        CopyLine(window.list, window.list.RowCount() / 2);
        window.list.SetRedraw(true);
        window.Paint();
    };
    const auto large = LoadedWindow(db, sizes.list);
    const auto small = LoadedWindow(db, sizes.lists[0]);
    results.push_back(CompareTimes(
        QString("split in the middle of %L1 lines against %L2").arg(sizes.list).arg(sizes.lists[0]),
        2, {.run = [&] { splitOnce(*large); }}, {.run = [&] { splitOnce(*small); }}, 9));
}

/// The checks before the output, which every row must take part in and pass.
void CheckEveryRow(AnswerList &list)
{
    int participants = 0;
    const bool isPassed = RunPreOutputChecks(
        list, [](const QString &) {}, participants);
    if (!isPassed || participants != list.RowCount())
        throw std::runtime_error("a row did not take part or pass");
}

void BenchChecks(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const auto window = LoadedWindow(db, sizes.list / 2);
    // Every order is split, so that there are two rows to each sum.
    window->list.SetRedraw(false);
    for (int row = 1; row < sizes.list; row += 2) {
        window->list.SetCell(row, ListColumn::AnswerQuantity, "0.500");
        CopyLine(window->list, row);
    }
    window->list.SetRedraw(true);
    window->grid.selectAll();
    SetAnswerDates(window->list, "20270115");
    volatile qsizetype sink = 0;
    results.push_back(CompareTimes(
        QString("checks over %L1 rows of %L2 orders").arg(sizes.list).arg(sizes.list / 2), 3,
        {.run = [&] { CheckEveryRow(window->list); }},
        {.run = [&] {
            for (int row = 1; row <= window->list.RowCount(); ++row) {
                const ListRow line = window->list.Row(row);
                for (const ListColumn column :
                     {ListColumn::AnswerQuantity, ListColumn::AnswerDate,
                      ListColumn::OrderQuantities, ListColumn::States, ListColumn::ShpSubNo,
                      ListColumn::LoadedDate, ListColumn::LoadedQuantity, ListColumn::LinKBN,
                      ListColumn::AccNo, ListColumn::Error})
                    sink = sink + line.View(column).size();
            }
        }}));
}

/// Everything selected, another date set and checked, as before the answers are made.
void SetAndCheck(BenchWindow &window, const QString &date)
{
    window.grid.selectAll();
    window.list.SetRedraw(false);
    SetAnswerDates(window.list, date);
    CheckEveryRow(window.list);
    window.list.SetRedraw(true);
    window.Paint();
}

/// The longest list may cost what the machine's caches, which hold little of it, make of its
/// length, but nothing may grow with its square: that would be ten times as much per line.
void BenchLongRun(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    ProgramState longestState;
    LongestDatabase(sizes).Open(longestState);
    const auto longest = LoadedWindow(longestState.db, sizes.longest);
    const auto standard = LoadedWindow(db, sizes.list);
    int day = 10;
    results.push_back(PerLine(
        CompareTimes(QString("date and checks per line, %L1 against %L2 lines")
                         .arg(sizes.longest)
                         .arg(sizes.list),
                     3, {.run = [&] { SetAndCheck(*longest, QString("202701%1").arg(day++)); }},
                     {.run = [&] { SetAndCheck(*standard, QString("202702%1").arg(day)); }}, 5),
        sizes.longest, sizes.list));
}

} // namespace

void BenchCommands(const Sizes &sizes, std::vector<Measurement> &results)
{
    ProgramState state;
    LargeDatabase(sizes).Open(state);
    BenchSetDates(sizes, state.db, results);
    BenchSplit(sizes, state.db, results);
    BenchChecks(sizes, state.db, results);
    BenchLongRun(sizes, state.db, results);
}
