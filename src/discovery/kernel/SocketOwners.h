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

    friend bool operator==(const SocketOwner &, const SocketOwner &) = default;
};

/// Finds the processes that hold given sockets, and remembers them.
///
/// The kernel knows this only the other way round, so that finding them means reading every descriptor of
/// every process. Between two calls little changes, so a call looks only where something can have changed:
/// - at the owners found before: does the process still hold the socket?
/// - at processes that were not there before;
/// - everywhere, when a socket then has no owner, and when that was last done `healingInterval` ago: a
///   process can be handed a socket by another at any time.
///
/// A process that has not run since it was looked at, and has as many descriptors, holds what it held then,
/// so that a look everywhere need not read it again. Whatever that may miss, such as an exchange in a table
/// of descriptors that two processes share, is healed when everything is read all the same, once every
/// `readingInterval`.
///
/// One thread at a time.
class SocketOwners
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds healingInterval{30};
    static constexpr std::chrono::minutes readingInterval{10};

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
    void lookAtNew(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes);
    void lookEverywhere(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes,
                        Clock::time_point now);
    void forgetGone(const std::vector<ProcessId> &processes);
    void lookAt(const ProcessId &process, const std::vector<ino_t> &inodes);
    void recognize(const ProcessId &process, const std::vector<ino_t> &inodes);
    [[nodiscard]] bool hasSlept(const ProcessId &process) const;
    [[nodiscard]] bool hasOwnerless(const std::vector<ino_t> &inodes) const;
    [[nodiscard]] std::vector<ino_t> withoutOwner(const std::vector<ino_t> &inodes) const;
    [[nodiscard]] std::vector<SocketOwner> owners() const;

    ProcessTable &m_table;
    std::vector<ProcessId> m_processes; ///< all that the last call saw
    std::map<ProcessId, Seen> m_seen;
    std::map<pid_t, Known> m_known;
    std::vector<ino_t> m_ownerless; ///< looked for everywhere and not found: others' and the kernel's own
    std::optional<Clock::time_point> m_lookedEverywhere;
    std::optional<Clock::time_point> m_readEverything;
};

} // namespace portolan
