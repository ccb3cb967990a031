// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace portolan {

/// What Portolan needs of /proc/PID/stat.
struct ProcessStat
{
    std::string command; ///< the process's name as it is, any byte but NUL in it
    char state = '?';
    unsigned long long cpuTicks = 0;   ///< time used by all its threads, in clock ticks
    unsigned long long startTicks = 0; ///< when it was started, in clock ticks since boot

    [[nodiscard]] bool isZombie() const { return state == 'Z'; }

    friend bool operator==(const ProcessStat &, const ProcessStat &) = default;
};

/// Reads the text of a /proc/PID/stat; absent when it is not of that form.
[[nodiscard]] std::optional<ProcessStat> parseProcessStat(std::string_view text);

/// The same of the process that has `pid` now; absent also when there is none.
[[nodiscard]] std::optional<ProcessStat> readProcessStat(pid_t pid);

/// The memory pages that a process has in use, from the text of its /proc/PID/statm: 0 for what has none of
/// its own, absent when it is not of that form.
[[nodiscard]] std::optional<unsigned long long> parseResidentPages(std::string_view text);

} // namespace portolan
