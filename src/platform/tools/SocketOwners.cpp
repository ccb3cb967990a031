#include "SocketOwners.h"

#include <algorithm>
#include <iterator>

std::optional<std::vector<SocketOwner>> SocketOwners::find(const std::vector<ino_t> &inodes,
                                                           Clock::time_point now)
{
    auto processes = m_table.processes();
    if (!processes)
        return std::nullopt;

    bool everywhere = !m_lookedAtAll || now - *m_lookedAtAll >= healingInterval;
    if (!everywhere) {
        verifyKnown(*processes, inodes);
        lookAtNew(*processes, inodes);
        everywhere = !std::ranges::includes(m_ownerless, withoutOwner(inodes));
    }
    if (everywhere) {
        lookAtAll(*processes, inodes);
        m_lookedAtAll = now;
    }
    m_ownerless = withoutOwner(inodes);
    m_processes = std::move(*processes);
    return owners();
}

void SocketOwners::verifyKnown(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes)
{
    // Looking at a process again may forget it: step on first.
    for (auto next = m_known.begin(); next != m_known.end();) {
        auto &[pid, known] = *next++;
        const ProcessId process{pid, known.incarnation};
        if (!std::ranges::binary_search(processes, process) || !isSameProcess(pid, known))
            m_known.erase(pid);
        else if (!holdsAll(pid, known, inodes))
            lookAt(process, inodes);
    }
}

bool SocketOwners::isSameProcess(pid_t pid, Known &known)
{
    auto stat = m_table.stat(pid);
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

void SocketOwners::lookAtNew(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes)
{
    std::vector<ProcessId> added;
    std::ranges::set_difference(processes, m_processes, std::back_inserter(added));
    for (const ProcessId &process : added)
        lookAt(process, inodes);
}

void SocketOwners::lookAtAll(const std::vector<ProcessId> &processes, const std::vector<ino_t> &inodes)
{
    m_known.clear();
    for (const ProcessId &process : processes)
        lookAt(process, inodes);
}

void SocketOwners::lookAt(const ProcessId &process, const std::vector<ino_t> &inodes)
{
    m_table.readSockets(process.pid, m_sockets);
    std::erase_if(m_sockets, [&](const SocketDescriptor &socket) {
        return !std::ranges::binary_search(inodes, socket.inode);
    });
    auto stat = m_sockets.empty() ? std::nullopt : m_table.stat(process.pid);
    if (stat && !stat->isZombie())
        m_known[process.pid] = {process.incarnation, std::move(*stat), m_sockets};
    else
        m_known.erase(process.pid);
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
        owners.push_back({pid, known.stat.command, known.descriptors});
    return owners;
}
