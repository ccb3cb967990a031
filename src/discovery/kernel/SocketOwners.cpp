// SPDX-License-Identifier: MIT
#include "SocketOwners.h"

#include <algorithm>
#include <iterator>

namespace portolan {

std::optional<std::vector<SocketOwner>> SocketOwners::find(const std::vector<ino_t> &inodes,
                                                           Clock::time_point now)
{
    auto processes = m_table.processes();
    if (!processes)
        return std::nullopt;

    bool needsRescan = !m_rescanned || now - *m_rescanned >= rescanInterval;
    if (!needsRescan) {
        verifyKnown(*processes, inodes);
        readNew(*processes, inodes);
        needsRescan = hasOwnerless(inodes);
    }
    if (needsRescan)
        rescan(*processes, inodes, now);
    m_ownerless = withoutOwner(inodes);
    m_processes = std::move(*processes);
    return owners();
}

void SocketOwners::verifyKnown(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes)
{
    // Reading a process again may erase it from the map: step on first.
    for (auto next = m_known.begin(); next != m_known.end();) {
        auto &[pid, known] = *next++;
        const ProcessId process{pid, known.incarnation};
        if (!std::ranges::binary_search(processes, process) || !isSameProcess(pid, known)) {
            m_seen.erase(process);
            m_known.erase(pid);
        } else if (!holdsAll(pid, known, inodes)) {
            read(process, inodes);
        }
    }
}

bool SocketOwners::isSameProcess(pid_t pid, Known &known)
{
    auto stat = m_table.stat(pid, m_table.runTime(pid));
    if (!stat || stat->isZombie() || stat->startTicks != known.stat.startTicks)
        return false;
    known.stat = std::move(*stat);
    return true;
}

bool SocketOwners::holdsAll(pid_t pid, Known &known, const std::vector<ino_t> &inodes)
{
    std::erase_if(known.descriptors, [&](const SocketDescriptor &socket) {
        return !std::ranges::binary_search(inodes, socket.inode);
    });
    return !known.descriptors.empty() &&
           std::ranges::all_of(known.descriptors,
                               [&](const SocketDescriptor &socket) { return m_table.holds(pid, socket); });
}

void SocketOwners::readNew(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes)
{
    std::vector<ProcessId> added;
    std::ranges::set_difference(processes, m_processes, std::back_inserter(added));
    for (const ProcessId &process : added)
        read(process, inodes);
}

void SocketOwners::rescan(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes,
                          Clock::time_point now)
{
    m_rescanned = now;
    if (!m_rereadAll || now - *m_rereadAll >= rereadInterval) {
        m_rereadAll = now;
        m_seen.clear();
    }
    forgetGone(processes);
    m_known.clear();
    std::vector<ProcessId> idle;
    for (const ProcessId &process : processes) {
        if (hasNotRun(process)) {
            updateKnown(process, inodes);
            idle.push_back(process);
        } else {
            read(process, inodes);
        }
    }
    // One that has just woken up is charged for it a moment later.
    if (hasOwnerless(inodes))
        std::ranges::for_each(idle, [&](const ProcessId &process) { read(process, inodes); });
}

void SocketOwners::forgetGone(const std::vector<ProcessId> &processes)
{
    std::erase_if(m_seen,
                  [&](const auto &seen) { return !std::ranges::binary_search(processes, seen.first); });
}

void SocketOwners::read(const ProcessId &process, const std::vector<ino_t> &inodes)
{
    Seen &seen = m_seen[process];
    seen.runTime = m_table.runTime(process.pid); // first: what it does meanwhile will count as later
    seen.descriptorCount = m_table.readSockets(process.pid, seen.sockets);
    updateKnown(process, inodes);
}

/// Adds the process to the known owners, or removes it, by what it held when it was read.
void SocketOwners::updateKnown(const ProcessId &process, const std::vector<ino_t> &inodes)
{
    const Seen &seen = m_seen[process];
    std::vector<SocketDescriptor> wanted;
    std::ranges::copy_if(seen.sockets, std::back_inserter(wanted), [&](const SocketDescriptor &socket) {
        return std::ranges::binary_search(inodes, socket.inode);
    });
    auto stat = wanted.empty() ? std::nullopt : m_table.stat(process.pid, seen.runTime);
    if (stat && !stat->isZombie())
        m_known[process.pid] = {process.incarnation, std::move(*stat), std::move(wanted)};
    else
        m_known.erase(process.pid);
}

/// Whether the process has done nothing since it was read.
bool SocketOwners::hasNotRun(const ProcessId &process) const
{
    const auto seen = m_seen.find(process);
    return seen != m_seen.end() && seen->second.runTime &&
           m_table.runTime(process.pid) == seen->second.runTime &&
           m_table.descriptorCount(process.pid) == seen->second.descriptorCount;
}

/// Whether a socket without an owner has not been part of a rescan.
bool SocketOwners::hasOwnerless(const std::vector<ino_t> &inodes) const
{
    return !std::ranges::includes(m_ownerless, withoutOwner(inodes));
}

std::vector<ino_t> SocketOwners::withoutOwner(const std::vector<ino_t> &inodes) const
{
    std::vector<ino_t> owned;
    for (const auto &[pid, known] : m_known)
        std::ranges::transform(known.descriptors, std::back_inserter(owned), &SocketDescriptor::inode);
    std::ranges::sort(owned);
    std::vector<ino_t> rest;
    std::ranges::set_difference(inodes, owned, std::back_inserter(rest));
    return rest;
}

std::vector<SocketOwner> SocketOwners::owners() const
{
    std::vector<SocketOwner> owners;
    owners.reserve(m_known.size());
    for (const auto &[pid, known] : m_known)
        owners.push_back({pid, known.stat.command, known.descriptors, known.stat.startTicks});
    return owners;
}

} // namespace portolan
