#pragma once

#include "platform/Clock.h"

/// Stops the clock at one moment while it lives.
class FixedClock
{
public:
    explicit FixedClock(const QDateTime &now)
    {
        SetClock([now] { return now; });
    }
    ~FixedClock() { SetClock({}); }
    Q_DISABLE_COPY(FixedClock)
};
