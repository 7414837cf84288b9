#pragma once

#include <QtGlobal>
#include <compare>

/// What identifies a delivery line.
struct LineKey
{
    qint64 accNo = 0;
    int accSubNo = 0;
    int shpSubNo = 0;

    auto operator<=>(const LineKey &) const = default;
};
