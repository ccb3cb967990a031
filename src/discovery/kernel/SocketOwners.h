// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessTable.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace portolan {

/// A process and which of the requested sockets it holds.
struct SocketOwner
{
    pid_t pid = 0;
    std::string command;                       ///< its name, unescaped
    std::vector<SocketDescriptor> descriptors; ///< by ascending number, never empty
    unsigned long long startTicks = 0;         ///< when it was started, in clock ticks since boot

    friend bool operator==(const SocketOwner &, const SocketOwner &) = default;
};

/// Finds the processes that hold given sockets, and remembers them.
///
/// The kernel maps processes to sockets only, so that finding them means reading every descriptor of every
/// process. Between two calls little changes, so a call reads only what can have changed:
/// - the owners found before: does the process still hold the socket?
/// - processes that were not there before;
/// - all processes (a rescan), when a socket then has no owner, and `rescanInterval` after the last one: a
///   process can be handed a socket by another at any time.
///
/// A process that has not run since it was read, and has as many descriptors, still holds what it held, so
/// that a rescan skips it. What this may miss, such as a change by another process that shares the descriptor
/// table, is found when all are read without exception, every `rereadInterval`.
///
/// One thread at a time.
class SocketOwners
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds rescanInterval{30};
    static constexpr std::chrono::minutes rereadInterval{10};

    /// `table` must outlive this object.
    explicit SocketOwners(ProcessTable &table)
        : m_table(table)
    {}

    /// All processes that hold any of the sockets `inodes` (sorted), by ascending pid; none if the process
    /// table cannot be read.
    [[nodiscard]] std::vector<SocketOwner> find(const std::vector<ino_t> &inodes, Clock::time_point now);

private:
    /// A process, its state when its descriptors were read, and which of its sockets are requested.
    struct Process
    {
        ProcessId id;
        bool isRead = false;
        std::optional<std::chrono::nanoseconds> runTime = {};
        unsigned descriptorCount = 0;
        std::vector<SocketDescriptor> sockets = {}; ///< all its sockets
        std::vector<SocketDescriptor> wanted = {};
        ProcessStat stat = {}; ///< of one with wanted sockets
    };

    void takeOver(const std::vector<ProcessId> &ids);
    [[nodiscard]] bool isStillOwner(Process &process, const std::vector<ino_t> &inodes);
    void rescan(const std::vector<ino_t> &inodes, Clock::time_point now);
    void read(Process &process, const std::vector<ino_t> &inodes);
    void chooseWanted(Process &process, const std::vector<ino_t> &inodes);
    [[nodiscard]] bool hasNotRun(const Process &process) const;
    [[nodiscard]] bool hasOwnerless(const std::vector<ino_t> &inodes) const;
    [[nodiscard]] std::vector<ino_t> withoutOwner(const std::vector<ino_t> &inodes) const;

    ProcessTable &m_table;
    std::vector<Process> m_processes; ///< all processes, by id
    std::vector<ino_t> m_ownerless;   ///< not found by a rescan: other users' and the kernel's own
    std::optional<Clock::time_point> m_rescanned;
    std::optional<Clock::time_point> m_rereadAll;
};

} // namespace portolan
