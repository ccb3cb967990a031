// SPDX-License-Identifier: MIT
#include "ProcessTable.h"

#include "ProcFs.h"

#include <charconv>

#include <ctime>
#include <sys/stat.h>

namespace portolan {

namespace {

/// The inode in "socket:[INODE]"; absent for any other link.
std::optional<ino_t> socketInode(std::string_view link)
{
    constexpr std::string_view head = "socket:[";
    ino_t inode = 0;
    if (!link.starts_with(head) ||
        std::from_chars(link.data() + head.size(), link.data() + link.size(), inode).ec != std::errc())
        return std::nullopt;
    return inode;
}

} // namespace

std::optional<std::vector<ProcessId>> KernelProcessTable::processes()
{
    ProcFs::NumberedEntries entries("/proc");
    if (!entries.isOpen())
        return std::nullopt;
    std::vector<ProcessId> processes;
    processes.reserve(512);
    while (const auto entry = entries.next())
        processes.push_back({pid_t(entry->number), entry->inode});
    return processes;
}

std::optional<std::chrono::nanoseconds> KernelProcessTable::runTime(pid_t pid)
{
    clockid_t clock = {};
    timespec time = {};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return std::nullopt;
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::optional<ProcessStat> KernelProcessTable::stat(pid_t pid,
                                                    const std::optional<std::chrono::nanoseconds> &runTime)
{
    const auto last = m_lastStats.find(pid);
    if (runTime && last != m_lastStats.end() && last->second.runTime == *runTime)
        return last->second.stat;
    auto stat = readProcessStat(pid);
    if (runTime && stat) {
        if (m_lastStats.size() >= maxLastStats)
            m_lastStats.clear(); // most are of processes that are gone
        m_lastStats.insert_or_assign(pid, LastStat{*runTime, *stat});
    }
    return stat;
}

unsigned KernelProcessTable::descriptorCount(pid_t pid)
{
    struct ::stat facts;
    return ::stat(ProcFs::Path(pid, "fd").text(), &facts) == 0 ? unsigned(facts.st_size) : 0;
}

unsigned KernelProcessTable::readSockets(pid_t pid, std::vector<SocketDescriptor> &sockets)
{
    ProcFs::Descriptors descriptors(pid);
    const unsigned count = descriptors.count();
    readSockets(descriptors, count, sockets);
    return count;
}

void KernelProcessTable::readSockets(ProcFs::Descriptors &descriptors, unsigned unlisted,
                                     std::vector<SocketDescriptor> &sockets)
{
    sockets.clear();
    const auto look = [&](unsigned number) {
        char buffer[64]; // a longer link names a file
        const auto link = descriptors.link(buffer, number);
        if (const auto inode = link ? socketInode(*link) : std::nullopt)
            sockets.push_back({int(number), *inode});
    };
    for (unsigned number = 0; number < unlisted; ++number)
        look(number);
    descriptors.skipTo(unlisted);
    while (const auto number = descriptors.next())
        look(*number);
}

bool KernelProcessTable::holds(pid_t pid, const SocketDescriptor &socket)
{
    char buffer[64];
    const auto link = ProcFs::readLink(buffer, ProcFs::Path(pid, socket.number).text());
    return link && socketInode(*link) == socket.inode;
}

} // namespace portolan
