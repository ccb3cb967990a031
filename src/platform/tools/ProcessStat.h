#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

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

/// What Portolan needs of /proc/PID/status.
struct ProcessStatus
{
    pid_t threadGroup = 0; ///< the process that the id belongs to: itself, unless it names a thread
    unsigned long long residentKiB = 0; ///< 0 for what has no memory of its own

    friend bool operator==(const ProcessStatus &, const ProcessStatus &) = default;
};

/// Reads the text of a /proc/PID/status; absent when it names no thread group.
[[nodiscard]] std::optional<ProcessStatus> parseProcessStatus(std::string_view text);
