#include "platform/Clock.h"

namespace {

std::function<QDateTime()> &Clock()
{
    static std::function<QDateTime()> clock;
    return clock;
}

} // namespace

QDateTime Now()
{
    return Clock() ? Clock()() : QDateTime::currentDateTime();
}

void SetClock(std::function<QDateTime()> clock)
{
    Clock() = std::move(clock);
}
