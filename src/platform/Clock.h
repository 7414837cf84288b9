#pragma once

#include <QDateTime>
#include <functional>

/// The local date and time now.
QDateTime Now();

/// Test seam: while set, `clock` gives the time. An empty function ends that.
void SetClock(std::function<QDateTime()> clock);
