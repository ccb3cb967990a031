// SPDX-License-Identifier: MIT
#include "KernelStats.h"

namespace portolan {

unsigned long long KernelStats::ticksSinceBoot(long long centiseconds, long ticksPerSecond)
{
    return static_cast<unsigned long long>(double(centiseconds) / 100.0 * double(ticksPerSecond));
}

ProcessStats KernelStats::of(const Figures &figures)
{
    // ps converts to fractions of a second and back, which sometimes loses a tick.
    double seconds = 0;
    if (figures.nowTicks > figures.startTicks)
        seconds = double(figures.nowTicks - figures.startTicks) / double(figures.ticksPerSecond);
    const auto ticks = static_cast<unsigned long long>(seconds * double(figures.ticksPerSecond));
    // In tenths of a percent; from 100 percent on ps shows whole percents.
    const unsigned long long share = ticks > 0 ? figures.cpuTicks * 1000 / ticks : 0;
    return {
        .uptimeSeconds = static_cast<qint64>(seconds),
        .cpuPercent = share < 1000 ? double(share) / 10 : double(share / 10),
        .memoryMB = double(figures.residentKiB) / 1024,
    };
}

} // namespace portolan
