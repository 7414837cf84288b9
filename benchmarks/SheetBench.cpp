#include "Benches.h"

#include "lines/ListLoading.h"
#include "sheet/SheetColumns.h"
#include "sheet/SheetFile.h"
#include "sheet/SheetPlan.h"

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <stdexcept>

namespace {

RowSelection Everything(const LineList &list)
{
    return RowSelection({{1, list.Count()}});
}

void Save(const LineList &list, const QString &path, SheetFormat format)
{
    if (!SaveSheet(list, Everything(list), path, format, [] { return true; }).IsSaved())
        throw std::runtime_error("the sheet can't be written");
}

/// The bare loop: every text of the columns, one behind the other.
void WriteTexts(const LineList &list, const QString &path)
{
    constexpr qsizetype Chunk = 1 << 16;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("the texts can't be written");
    QString texts;
    for (int row = 1; row <= list.Count(); ++row) {
        for (const SheetColumn &column : SheetColumns())
            texts += SheetText(list, row, column);
        if (texts.size() < Chunk && row < list.Count())
            continue;
        file.write(texts.toUtf8());
        texts.resize(0);
    }
}

QByteArray ReadBytes(const QString &path)
{
    QString error;
    const auto bytes = SheetBytes(path, error);
    if (!bytes)
        throw std::runtime_error(error.toStdString());
    return *bytes;
}

/// The time that a file takes to be understood, beyond reading it, against a second.
Measurement TakeIn(const QString &what, const LineList &list, const QString &path)
{
    constexpr size_t Rounds = 9;
    constexpr double Second = 1000;
    std::vector<double> times;
    while (times.size() < Rounds) {
        const double reading = MillisecondsOf([&] { ReadBytes(path); });
        const double all = MillisecondsOf([&] {
            const SheetPlan plan = PlanSheet(ReadSheet(ReadBytes(path)), list);
            if (plan.unchanged != list.Count())
                throw std::runtime_error("a file without an edit changes something");
        });
        times.push_back(all - reading);
    }
    std::ranges::nth_element(times, times.begin() + Rounds / 2);
    return {what, "ms", times[Rounds / 2], Second, 1};
}

} // namespace

void BenchSheets(const Sizes &sizes, std::vector<Measurement> &results)
{
    ProgramState state;
    LargeDatabase(sizes).Open(state);
    LineList list;
    if (LoadList(state.db, BenchDatabase::CustomerOf(sizes.list), list).lineCount != sizes.list)
        throw std::runtime_error("the list has another number of lines");
    const QTemporaryDir folder;
    const QString csv = folder.filePath("list.csv");
    const QString texts = folder.filePath("texts");
    results.push_back(
        CompareTimes(QString("CSV of %L1 lines against their bare texts").arg(sizes.list), 2,
                     {.run = [&] { Save(list, csv, SheetFormat::CsvUtf8); }},
                     {.run = [&] { WriteTexts(list, texts); }}));
    results.push_back(
        TakeIn(QString("CSV of %L1 lines taken in, beyond reading it").arg(sizes.list), list, csv));
}
