#pragma once

#include <QString>
#include <compare>

/// What identifies a delivery line.
struct LineKey
{
    qint64 accNo = 0;
    int accSubNo = 0;
    int shpSubNo = 0;

    /// As the log names the line.
    QString ToText() const
    {
        return QString("AccNo %1-%2-%3").arg(accNo).arg(accSubNo).arg(shpSubNo);
    }

    auto operator<=>(const LineKey &) const = default;
};
