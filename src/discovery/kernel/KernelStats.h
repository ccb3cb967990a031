// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessStats.h"

/// Calculates statistics from the kernel's figures of a process, rounded as by ps. Pure functions.
namespace portolan::KernelStats {

/// Times are in clock ticks.
struct Figures
{
    unsigned long long cpuTicks = 0;
    unsigned long long startTicks = 0; ///< since boot
    unsigned long long nowTicks = 0;   ///< since boot
    unsigned long long residentKiB = 0;
    long ticksPerSecond = 100;
};

[[nodiscard]] ProcessStats of(const Figures &figures);

/// Converts a time since boot in hundredths of a second to clock ticks.
[[nodiscard]] unsigned long long ticksSinceBoot(long long centiseconds, long ticksPerSecond);

} // namespace portolan::KernelStats
