// SPDX-License-Identifier: MIT
#include "KernelSource.h"

#include "KernelStats.h"
#include "ListeningSockets.h"
#include "PrintedName.h"
#include "ProcFs.h"

#include <algorithm>
#include <iterator>

#include <climits>
#include <ctime>
#include <unistd.h>

namespace portolan {

namespace {

/// Whether a runtime gave this name to its main thread, which on Linux renames the process.
bool isThreadName(std::string_view command)
{
    return command == "MainThread" || command == "node-MainThread";
}

/// The file name in the target of /proc/PID/exe, without the mark of a deleted file.
std::string_view executableName(std::string_view link)
{
    constexpr std::string_view deleted = " (deleted)";
    if (link.ends_with(deleted))
        link.remove_suffix(deleted.size());
    return link.substr(link.rfind('/') + 1);
}

QString commandOf(const SocketOwner &owner)
{
    std::string_view name = owner.command;
    char buffer[PATH_MAX];
    if (isThreadName(name)) {
        if (const auto link = ProcFs::readLink(buffer, ProcFs::Path(owner.pid, "exe").text()))
            name = executableName(*link);
    }
    return PrintedName::of(name);
}

std::vector<ListeningSocket> localSockets()
{
    std::vector<ListeningSocket> sockets = ListeningSockets::read();
    std::erase_if(sockets, [](const ListeningSocket &socket) { return !socket.isOnAcceptedHost(); });
    return sockets;
}

unsigned long long nowTicks(long ticksPerSecond)
{
    // The clock behind /proc/uptime.
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return KernelStats::ticksSinceBoot(now.tv_sec * 100LL + now.tv_nsec / 10'000'000, ticksPerSecond);
}

} // namespace

QList<RawListener> KernelSource::listeners(const std::stop_token & /*stop*/)
{
    const std::lock_guard lock(m_mutex);
    const std::vector<ListeningSocket> sockets = localSockets();
    std::vector<ino_t> inodes;
    std::ranges::transform(sockets, std::back_inserter(inodes), &ListeningSocket::inode);
    QList<RawListener> listeners;
    for (const SocketOwner &owner : m_owners.find(inodes, SocketOwners::Clock::now())) {
        const QString command = commandOf(owner);
        for (const SocketDescriptor &descriptor : owner.descriptors) {
            const auto socket =
                std::ranges::lower_bound(sockets, descriptor.inode, {}, &ListeningSocket::inode);
            listeners.append({.pid = owner.pid,
                              .command = command,
                              .port = socket->port,
                              .identity = ProcessIdentity{owner.pid, owner.startTicks}});
        }
    }
    return listeners;
}

std::vector<std::optional<QString>> KernelSource::workingFolders(const QList<qint32> &pids,
                                                                 const std::stop_token & /*stop*/)
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::optional<QString>> folders;
    std::ranges::transform(pids, std::back_inserter(folders),
                           [this](qint32 pid) { return workingFolder(pid); });
    return folders;
}

std::vector<std::optional<ProcessStats>> KernelSource::stats(const QList<qint32> &pids,
                                                             const std::stop_token & /*stop*/)
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::optional<ProcessStats>> stats;
    std::ranges::transform(pids, std::back_inserter(stats), [this](qint32 pid) { return statsOf(pid); });
    return stats;
}

std::optional<QString> KernelSource::workingFolder(qint32 pid)
{
    char buffer[PATH_MAX];
    // The id of a thread that is not the main one has a cwd link too, but no run time.
    const auto link =
        m_table.runTime(pid) ? ProcFs::readLink(buffer, ProcFs::Path(pid, "cwd").text()) : std::nullopt;
    return link ? std::optional(QString::fromUtf8(*link)) : std::nullopt;
}

std::optional<ProcessStats> KernelSource::statsOf(qint32 pid)
{
    const auto runTime = m_table.runTime(pid);
    const auto times = runTime ? m_table.stat(pid, runTime) : std::nullopt;
    char buffer[256];
    // The same figure as in /proc/PID/status, which takes the kernel three times as long to print.
    const auto statm = ProcFs::readInto(buffer, ProcFs::Path(pid, "statm").text());
    const auto residentPages = statm ? parseResidentPages(*statm) : std::nullopt;
    if (!times || !residentPages)
        return std::nullopt;
    const long ticksPerSecond = sysconf(_SC_CLK_TCK);
    return KernelStats::of({.cpuTicks = times->cpuTicks,
                            .startTicks = times->startTicks,
                            .nowTicks = nowTicks(ticksPerSecond),
                            .residentKiB = *residentPages * (unsigned(sysconf(_SC_PAGESIZE)) / 1024),
                            .ticksPerSecond = ticksPerSecond});
}

} // namespace portolan
