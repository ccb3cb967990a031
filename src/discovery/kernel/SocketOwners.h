// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessTable.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace portolan {

/// A process and the sockets it holds among those asked for.
struct SocketOwner
{
    pid_t pid = 0;
    std::string command;                       ///< its name, as the kernel has it
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
/// that a rescan skips it. What this may miss, such as an exchange in a table of descriptors that two
/// processes share, is found when all are read without exception, every `rereadInterval`.
///
/// One thread at a time.
class SocketOwners
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds rescanInterval{30};
    static constexpr std::chrono::minutes rereadInterval{10};

    /// Reads `table`, which must outlive this.
    explicit SocketOwners(ProcessTable &table)
        : m_table(table)
    {}

    /// All processes that hold any of the sockets `inodes`, which are sorted, by ascending pid; absent when
    /// the process table cannot be read.
    [[nodiscard]] std::optional<std::vector<SocketOwner>> find(const std::vector<ino_t> &inodes,
                                                               Clock::time_point now);

private:
    /// A process as it was when its descriptors were read.
    struct Seen
    {
        std::optional<std::chrono::nanoseconds> runTime;
        unsigned descriptorCount = 0;
        std::vector<SocketDescriptor> sockets; ///< all that it held
    };

    /// A process that holds sockets of those asked for.
    struct Known
    {
        ino_t incarnation = 0;
        ProcessStat stat;
        std::vector<SocketDescriptor> descriptors;
    };

    void verifyKnown(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes);
    [[nodiscard]] bool isSameProcess(pid_t pid, Known &known);
    [[nodiscard]] bool holdsAll(pid_t pid, Known &known, const std::vector<ino_t> &inodes);
    void readNew(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes);
    void rescan(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes,
                Clock::time_point now);
    void forgetGone(const std::vector<ProcessId> &processes);
    void read(const ProcessId &process, const std::vector<ino_t> &inodes);
    void updateKnown(const ProcessId &process, const std::vector<ino_t> &inodes);
    [[nodiscard]] bool hasNotRun(const ProcessId &process) const;
    [[nodiscard]] bool hasOwnerless(const std::vector<ino_t> &inodes) const;
    [[nodiscard]] std::vector<ino_t> withoutOwner(const std::vector<ino_t> &inodes) const;
    [[nodiscard]] std::vector<SocketOwner> owners() const;

    ProcessTable &m_table;
    std::vector<ProcessId> m_processes; ///< all that the last call saw
    std::map<ProcessId, Seen> m_seen;
    std::map<pid_t, Known> m_known;
    std::vector<ino_t> m_ownerless; ///< not found by a rescan: other users' and the kernel's own
    std::optional<Clock::time_point> m_rescanned;
    std::optional<Clock::time_point> m_rereadAll;
};

} // namespace portolan
