// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include <sys/resource.h>

namespace portolan {

/// The cost of an operation, in milliseconds.
struct Cost
{
    double wall = 0;
    double cpu = 0;      ///< of this process, all its threads
    double children = 0; ///< CPU of the processes that it started and waited for
};

inline double cpuMilliseconds(int who)
{
    rusage usage{};
    getrusage(who, &usage);
    const auto milliseconds = [](const timeval &time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

template <typename Work>
Cost costOf(Work work)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const double cpu = cpuMilliseconds(RUSAGE_SELF);
    const double children = cpuMilliseconds(RUSAGE_CHILDREN);
    work();
    return {
        .wall = std::chrono::duration<double, std::milli>(Clock::now() - start).count(),
        .cpu = cpuMilliseconds(RUSAGE_SELF) - cpu,
        .children = cpuMilliseconds(RUSAGE_CHILDREN) - children,
    };
}

/// The median of each figure on its own.
inline Cost median(std::vector<Cost> costs)
{
    const auto middle = [&](double Cost::*figure) {
        std::ranges::nth_element(costs, costs.begin() + long(costs.size() / 2), {}, figure);
        return costs[costs.size() / 2].*figure;
    };
    return {middle(&Cost::wall), middle(&Cost::cpu), middle(&Cost::children)};
}

/// One line that the driver parses.
inline void report(const char *name, const Cost &cost)
{
    std::printf("%s %.4f %.4f %.4f\n", name, cost.wall, cost.cpu, cost.children);
}

} // namespace portolan
