#include "BenchWindow.h"
#include "Benches.h"

#include "lines/AnswerDates.h"
#include "lines/LineSplit.h"
#include "lines/ListLoading.h"
#include "output/PreOutputChecks.h"

#include <functional>
#include <memory>
#include <stdexcept>

namespace {

volatile qsizetype sink = 0;

/// A list loaded with one customer's lines.
std::unique_ptr<BenchWindow> LoadedWindow(bDAO &db, int lines)
{
    auto window = std::make_unique<BenchWindow>();
    const LoadedList loaded = LoadList(db, BenchDatabase::CustomerOf(lines), window->list);
    if (loaded.lineCount != lines)
        throw std::runtime_error("the list has another number of lines");
    window->model.Filled();
    window->Paint();
    return window;
}

/// Sets a date and paints what the window shows of it.
void SetAndPaint(BenchWindow &window, const std::function<void()> &set)
{
    set();
    window.model.Changed();
    window.Paint();
}

void BenchSetDates(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const auto window = LoadedWindow(db, sizes.list);
    std::vector<QString> dates(size_t(sizes.list));
    results.push_back(CompareTimes(
        QString("date set for %L1 selected rows").arg(sizes.list), 2,
        {.run =
             [&] {
                 SetAndPaint(*window, [&] {
                     SetAnswerDates(window->edits, window->Everything(), "20270115");
                 });
             }},
        {.run = [&] {
            // Each line's date replaced, and compared with the specified one for the mark.
            SetAndPaint(*window, [&] {
                for (int row = 1; row <= window->list.Count(); ++row) {
                    dates[size_t(row - 1)] = "20270115";
                    sink = sink + window->list.At(row).IsSpecifiedDate(dates[size_t(row - 1)]);
                }
            });
        }}));
}

void BenchSplit(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const auto splitOnce = [](BenchWindow &window) {
        const int row = window.list.Count() / 2;
        window.model.InsertBelow(row, [&] { CopyLine(window.edits, row); });
        window.Paint();
    };
    const auto large = LoadedWindow(db, sizes.list);
    const auto small = LoadedWindow(db, sizes.lists[0]);
    results.push_back(CompareTimes(
        QString("split in the middle of %L1 lines against %L2").arg(sizes.list).arg(sizes.lists[0]),
        1.5, {.run = [&] { splitOnce(*large); }}, {.run = [&] { splitOnce(*small); }}, 9));
}

/// The checks before the output, which every row must take part in and pass.
void CheckEveryRow(BenchWindow &window)
{
    const CheckResult result
        = RunPreOutputChecks(window.list, window.Everything(), [](const QString &) {});
    if (!result.isPassed || result.participants != window.list.Count())
        throw std::runtime_error("a row did not take part or pass");
}

void BenchChecks(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const auto window = LoadedWindow(db, sizes.list / 2);
    // Every order is split, so that there are two rows to each sum.
    for (int row = 1; row < sizes.list; row += 2) {
        window->list.At(row).SetQuantity(Decimal::FromText(u"0.5"));
        CopyLine(window->edits, row);
    }
    window->model.Filled();
    SetAnswerDates(window->edits, window->Everything(), "20270115");
    results.push_back(CompareTimes(
        QString("checks over %L1 rows of %L2 orders").arg(sizes.list).arg(sizes.list / 2), 2,
        {.run = [&] { CheckEveryRow(*window); }}, {.run = [&] {
            for (int row = 1; row <= window->list.Count(); ++row) {
                const Line &line = window->list.At(row);
                const int isLooked
                    = int(line.IsShipped()) + int(line.IsChanged()) + int(line.NeedsDate())
                      + int(line.Now().date.isEmpty()) + int(line.Now().quantity.IsZero())
                      + int(line.OpenQuantity().IsZero()) + int(line.Key().accNo == 0);
                sink = sink + isLooked;
            }
        }}));
}

/// Everything selected, another date set and checked, as before the answers are made.
void SetAndCheck(BenchWindow &window, const QString &date)
{
    SetAndPaint(window, [&] { SetAnswerDates(window.edits, window.Everything(), date); });
    CheckEveryRow(window);
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
