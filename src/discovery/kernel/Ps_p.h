#pragma once

#include <string>

namespace portolan {

namespace Ps {

/// What the three columns are made of. Times are in clock ticks.
struct Figures
{
    unsigned long long cpuTicks = 0;
    unsigned long long startTicks = 0; ///< since boot
    unsigned long long nowTicks = 0;   ///< since boot
    unsigned long long residentKiB = 0;
    long ticksPerSecond = 100;
};

/// The line that ps prints for them, with its line break.
[[nodiscard]] std::string line(const Figures &figures);

/// Clock ticks since boot for a time that the kernel prints with two decimals, rounded as ps does.
[[nodiscard]] unsigned long long ticksSinceBoot(long long centiseconds, long ticksPerSecond);

} // namespace Ps

} // namespace portolan
