// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessStat.h"

#include <chrono>
#include <compare>
#include <optional>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

namespace portolan {

/// A process as the table lists it. A pid that is reused gets a new `incarnation`.
struct ProcessId
{
    pid_t pid = 0;
    ino_t incarnation = 0;

    friend auto operator<=>(const ProcessId &, const ProcessId &) = default;
};

/// One open descriptor of a process that is a socket.
struct SocketDescriptor
{
    int number = 0;
    ino_t inode = 0; ///< the socket's

    friend bool operator==(const SocketDescriptor &, const SocketDescriptor &) = default;
};

/// The processes of this machine and their open descriptors. What is gone or not permitted is absent or
/// empty.
class ProcessTable
{
public:
    virtual ~ProcessTable() = default;

    /// Every process, by ascending pid; absent when the table cannot be read at all.
    [[nodiscard]] virtual std::optional<std::vector<ProcessId>> processes() = 0;
    /// The CPU time of all threads of the process in nanoseconds; a thread that runs at this moment may not
    /// have been charged yet. Also absent for the id of a thread that is not the main one.
    [[nodiscard]] virtual std::optional<std::chrono::nanoseconds> runTime(pid_t pid) = 0;
    /// The stat of the process, whose run time has just been found to be `runTime`.
    [[nodiscard]] virtual std::optional<ProcessStat>
    stat(pid_t pid, const std::optional<std::chrono::nanoseconds> &runTime) = 0;
    /// How many descriptors the process has open; 0 where the kernel does not tell (before Linux 6.2).
    [[nodiscard]] virtual unsigned descriptorCount(pid_t pid) = 0;
    /// Replaces `sockets` by the process's sockets, in ascending order of descriptors, and returns the
    /// descriptorCount() before they were read.
    virtual unsigned readSockets(pid_t pid, std::vector<SocketDescriptor> &sockets) = 0;
    /// Whether the descriptor still refers to that socket.
    [[nodiscard]] virtual bool holds(pid_t pid, const SocketDescriptor &socket) = 0;
};

namespace ProcFs {
class Descriptors;
}

/// The process table in /proc. One thread at a time.
///
/// The stat of a process that has not run since it was last read is not read again: such a process has
/// neither used CPU time nor changed its name nor ended.
class KernelProcessTable final : public ProcessTable
{
public:
    std::optional<std::vector<ProcessId>> processes() override;
    std::optional<std::chrono::nanoseconds> runTime(pid_t pid) override;
    std::optional<ProcessStat> stat(pid_t pid,
                                    const std::optional<std::chrono::nanoseconds> &runTime) override;
    unsigned descriptorCount(pid_t pid) override;
    unsigned readSockets(pid_t pid, std::vector<SocketDescriptor> &sockets) override;
    bool holds(pid_t pid, const SocketDescriptor &socket) override;

    /// Reads the descriptors below `unlisted` without listing them first, since listing costs as much as
    /// reading, and then lists and reads the others.
    static void readSockets(ProcFs::Descriptors &descriptors, unsigned unlisted,
                            std::vector<SocketDescriptor> &sockets);

private:
    /// The stat of a process at a run time.
    struct LastStat
    {
        std::chrono::nanoseconds runTime;
        ProcessStat stat;
    };

    static constexpr size_t maxLastStats = 2000;

    std::unordered_map<pid_t, LastStat> m_lastStats;
};

} // namespace portolan
