// SPDX-License-Identifier: MIT
#include "SocketOwners.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace portolan {

std::vector<SocketOwner> SocketOwners::find(const std::vector<ino_t> &inodes, Clock::time_point now)
{
    const auto ids = m_table.processes();
    if (!ids)
        return {};
    takeOver(*ids);

    bool needsRescan = !m_rescanned || now - *m_rescanned >= rescanInterval;
    if (!needsRescan) {
        for (Process &process : m_processes) {
            if (!process.isRead || (!process.wanted.empty() && !isStillOwner(process, inodes)))
                read(process, inodes);
        }
        needsRescan = hasOwnerless(inodes);
    }
    if (needsRescan)
        rescan(inodes, now);
    m_ownerless = withoutOwner(inodes);

    std::vector<SocketOwner> owners;
    for (const Process &process : m_processes) {
        if (!process.wanted.empty())
            owners.push_back({process.id.pid, process.stat.command, process.wanted, process.stat.startTicks});
    }
    return owners;
}

/// Forgets the processes that are gone and adds those that are new.
void SocketOwners::takeOver(const std::vector<ProcessId> &ids)
{
    if (std::ranges::equal(ids, m_processes, {}, {}, &Process::id))
        return;
    std::vector<Process> processes;
    processes.reserve(ids.size());
    auto known = m_processes.begin();
    for (const ProcessId &id : ids) {
        known = std::find_if(known, m_processes.end(), [&](const Process &one) { return one.id >= id; });
        const bool isKnown = known != m_processes.end() && known->id == id;
        processes.push_back(isKnown ? std::move(*known) : Process{.id = id});
    }
    m_processes = std::move(processes);
}

/// Whether the process is the same as before, and still holds all of its wanted sockets and at least one.
bool SocketOwners::isStillOwner(Process &process, const std::vector<ino_t> &inodes)
{
    const pid_t pid = process.id.pid;
    auto stat = m_table.stat(pid, m_table.runTime(pid));
    if (!stat || stat->isZombie() || stat->startTicks != process.stat.startTicks)
        return false;
    process.stat = std::move(*stat);
    std::erase_if(process.wanted, [&](const SocketDescriptor &socket) {
        return !std::ranges::binary_search(inodes, socket.inode);
    });
    const auto isHeld = [&](const SocketDescriptor &socket) { return m_table.holds(pid, socket); };
    return !process.wanted.empty() && std::ranges::all_of(process.wanted, isHeld);
}

void SocketOwners::rescan(const std::vector<ino_t> &inodes, Clock::time_point now)
{
    m_rescanned = now;
    const bool readsAll = !m_rereadAll || now - *m_rereadAll >= rereadInterval;
    if (readsAll)
        m_rereadAll = now;
    std::vector<Process *> idle;
    for (Process &process : m_processes) {
        if (!readsAll && hasNotRun(process)) {
            chooseWanted(process, inodes);
            idle.push_back(&process);
        } else {
            read(process, inodes);
        }
    }
    // A process that has just woken up is charged for it a moment later.
    if (hasOwnerless(inodes))
        std::ranges::for_each(idle, [&](Process *process) { read(*process, inodes); });
}

void SocketOwners::read(Process &process, const std::vector<ino_t> &inodes)
{
    process.isRead = true;
    process.runTime = m_table.runTime(process.id.pid); // first: what it does meanwhile counts as later
    process.descriptorCount = m_table.readSockets(process.id.pid, process.sockets);
    chooseWanted(process, inodes);
}

/// Chooses among the sockets that the process held when it was read. A process that has ended holds none.
void SocketOwners::chooseWanted(Process &process, const std::vector<ino_t> &inodes)
{
    process.wanted.clear();
    std::ranges::copy_if(process.sockets, std::back_inserter(process.wanted), [&](const auto &socket) {
        return std::ranges::binary_search(inodes, socket.inode);
    });
    auto stat = process.wanted.empty() ? std::nullopt : m_table.stat(process.id.pid, process.runTime);
    if (stat && !stat->isZombie())
        process.stat = std::move(*stat);
    else
        process.wanted.clear();
}

/// Whether the process has not run since it was read.
bool SocketOwners::hasNotRun(const Process &process) const
{
    return process.runTime && m_table.runTime(process.id.pid) == process.runTime &&
           m_table.descriptorCount(process.id.pid) == process.descriptorCount;
}

/// Whether there is a socket without an owner for which no rescan was done yet.
bool SocketOwners::hasOwnerless(const std::vector<ino_t> &inodes) const
{
    return !std::ranges::includes(m_ownerless, withoutOwner(inodes));
}

std::vector<ino_t> SocketOwners::withoutOwner(const std::vector<ino_t> &inodes) const
{
    std::vector<ino_t> owned;
    for (const Process &process : m_processes)
        std::ranges::transform(process.wanted, std::back_inserter(owned), &SocketDescriptor::inode);
    std::ranges::sort(owned);
    std::vector<ino_t> rest;
    std::ranges::set_difference(inodes, owned, std::back_inserter(rest));
    return rest;
}

} // namespace portolan
