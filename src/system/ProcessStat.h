// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace portolan {

/// The fields of /proc/PID/stat that Portolan needs.
struct ProcessStat
{
    std::string command; ///< the process's name, unescaped; may contain any byte but NUL
    char state = '?';
    unsigned long long cpuTicks = 0;   ///< time used by all its threads, in clock ticks
    unsigned long long startTicks = 0; ///< when it was started, in clock ticks since boot

    [[nodiscard]] bool isZombie() const { return state == 'Z'; }

    friend bool operator==(const ProcessStat &, const ProcessStat &) = default;
};

/// Parses the text of a /proc/PID/stat; absent if it is malformed.
[[nodiscard]] std::optional<ProcessStat> parseProcessStat(std::string_view text);

/// The same for the process that has `pid` now; also absent if there is none.
[[nodiscard]] std::optional<ProcessStat> readProcessStat(pid_t pid);

/// The resident memory pages of a process, from the text of its /proc/PID/statm: 0 for a kernel thread,
/// absent if the text is malformed.
[[nodiscard]] std::optional<unsigned long long> parseResidentPages(std::string_view text);

} // namespace portolan
