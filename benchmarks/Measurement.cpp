#include "Measurement.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdio>
#include <malloc.h>

namespace {

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double Timed(const TimedWork &work)
{
    work.prepare();
    const double time = MillisecondsOf(work.run);
    work.clean();
    return time;
}

} // namespace

double MillisecondsOf(const Work &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

Measurement CompareTimes(const QString &what, double goal, const TimedWork &ours,
                         const TimedWork &bare, int rounds)
{
    std::fprintf(stderr, "%s ...\n", qPrintable(what));
    std::vector<double> oursTimes;
    std::vector<double> bareTimes;
    std::vector<double> ratios;
    const QDeadlineTimer second(1000);
    // Before the first round files and code come into memory; a single one takes too long for that.
    for (int round = rounds == 1; round <= rounds || !second.hasExpired(); ++round) {
        const double bareTime = Timed(bare);
        const double oursTime = Timed(ours);
        if (round == 0)
            continue;
        bareTimes.push_back(bareTime);
        oursTimes.push_back(oursTime);
        ratios.push_back(oursTime / bareTime);
    }
    std::fprintf(stderr, "... %.2f\n", Median(ratios));
    return {what, "ms", Median(oursTimes), Median(bareTimes), goal, Median(ratios)};
}

Measurement PerLine(Measurement lists, int oursLines, int bareLines)
{
    constexpr double MicrosecondsPerMs = 1000;
    lists.unit = "us";
    lists.ours *= MicrosecondsPerMs / oursLines;
    lists.bare *= MicrosecondsPerMs / bareLines;
    lists.ratio *= double(bareLines) / oursLines;
    return lists;
}

double AllocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

QString ToTable(const std::vector<Measurement> &measurements)
{
    QString table = QString("%1 %2 %3 %4 %5\n")
                        .arg("work", -62)
                        .arg("ours", 14)
                        .arg("bare", 14)
                        .arg("ratio", 7)
                        .arg("goal", 6);
    for (const Measurement &line : measurements)
        table += QString("%1 %2 %3 %4 %5  %6\n")
                     .arg(line.what, -62)
                     .arg(QString("%1 %2").arg(line.ours, 0, 'f', 3).arg(line.unit), 14)
                     .arg(QString("%1 %2").arg(line.bare, 0, 'f', 3).arg(line.unit), 14)
                     .arg(line.ratio, 7, 'f', 2)
                     .arg(line.goal, 6, 'f', 2)
                     .arg(line.IsMet() ? "met" : "NOT MET");
    table += "Times are medians; a ratio is the median of its rounds' own ratios.\n";
    return table;
}

QByteArray ToJson(const std::vector<Measurement> &measurements)
{
    QJsonArray array;
    for (const Measurement &line : measurements)
        array += QJsonObject{{"work", line.what},  {"unit", line.unit},   {"ours", line.ours},
                             {"bare", line.bare},  {"ratio", line.ratio}, {"goal", line.goal},
                             {"met", line.IsMet()}};
    return QJsonDocument(array).toJson();
}
