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

/// A process as the table lists it. A pid that was given to a new process comes with a new `incarnation`.
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

/// The processes of this machine and what they hold open. What is gone or not permitted is absent or empty.
class ProcessTable
{
public:
    virtual ~ProcessTable() = default;

    /// Every process, by ascending pid; absent when the table cannot be read at all.
    [[nodiscard]] virtual std::optional<std::vector<ProcessId>> processes() = 0;
    /// For how long all threads of the process have run, to the nanosecond but for what a thread that runs at
    /// this moment is yet to be charged for. Absent for the id of a thread, too.
    [[nodiscard]] virtual std::optional<std::chrono::nanoseconds> runTime(pid_t pid) = 0;
    /// What the process, which has just been found to have run for `runTime`, is like.
    [[nodiscard]] virtual std::optional<ProcessStat>
    stat(pid_t pid, const std::optional<std::chrono::nanoseconds> &runTime) = 0;
    /// How many descriptors the process has open; 0 where the kernel does not tell (before Linux 6.2).
    [[nodiscard]] virtual unsigned descriptorCount(pid_t pid) = 0;
    /// Writes the process's sockets, by ascending descriptor, into `sockets` in place of what it held, and
    /// returns the descriptorCount() that there was before.
    virtual unsigned readSockets(pid_t pid, std::vector<SocketDescriptor> &sockets) = 0;
    /// Whether the descriptor still is what it was.
    [[nodiscard]] virtual bool holds(pid_t pid, const SocketDescriptor &socket) = 0;
};

namespace ProcFs {
class Descriptors;
}

/// The real one, read from /proc. One thread at a time.
///
/// A process that has not run since it was last asked about has neither used time, changed its name nor
/// ended, and is not read again.
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

    /// Reads the descriptors below `unlisted` without having the kernel list them, which costs it as much as
    /// reading them, and then those that there are besides.
    static void readSockets(ProcFs::Descriptors &descriptors, unsigned unlisted,
                            std::vector<SocketDescriptor> &sockets);

private:
    /// What a process was like when it had run for so long.
    struct LastStat
    {
        std::chrono::nanoseconds runTime;
        ProcessStat stat;
    };

    static constexpr size_t maxLastStats = 2000;

    std::unordered_map<pid_t, LastStat> m_lastStats;
};

} // namespace portolan
