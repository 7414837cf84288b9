#pragma once

#include <QString>
#include <functional>
#include <vector>

/// One line of the result: work of the program against the bare minimum for the same work.
struct Measurement
{
    QString what;
    QString unit = "ms";
    double ours = 0;
    double bare = 0;
    double goal = 0; ///< the ratio to reach
    double ratio = bare > 0 ? ours / bare : 0;

    bool IsMet() const { return ratio <= goal; }
};

using Work = std::function<void()>;

/// Milliseconds that the work takes once.
double MillisecondsOf(const Work &work);

/// Something to run, with what comes before and after it untimed.
struct TimedWork
{
    Work prepare = [] {};
    Work run;
    Work clean = [] {};
};

/// Runs both in turn, of several rounds after one not counted: `rounds` times, or more as far as a
/// second goes. Takes the median of each, and of the rounds' ratios: a machine that changes its
/// pace between two rounds does not change those.
Measurement CompareTimes(const QString &what, double goal, const TimedWork &ours,
                         const TimedWork &bare, int rounds = 9);

/// Times of two whole lists as microseconds a line.
Measurement PerLine(Measurement lists, int oursLines, int bareLines);

/// Bytes that the process has allocated.
double AllocatedBytes();

/// The measurements as a table for people and as a JSON array.
QString ToTable(const std::vector<Measurement> &measurements);
QByteArray ToJson(const std::vector<Measurement> &measurements);
