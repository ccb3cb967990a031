// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "LocalRequest.h"
#include "Probe.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>

namespace portolan {

class OffHostClient;

/// The probes under way, with one request each, and those that wait for their turn: their number is limited,
/// to leave descriptors for the rest of the program. Belongs to one thread at a time, which drives them by
/// calling `advance`.
class ProbeSet
{
public:
    static constexpr int maxUnderWay = 512;
    /// How many probes run at a time if the program may have `descriptorLimit` descriptors open.
    [[nodiscard]] static int mostUnderWay(int descriptorLimit);

    /// A set of probes whose waits also end when `wakeFd` is readable.
    explicit ProbeSet(int wakeFd);
    /// Probes still under way finish as unreachable.
    ~ProbeSet();
    ProbeSet(const ProbeSet &) = delete;
    ProbeSet &operator=(const ProbeSet &) = delete;

    /// Whether the set got the descriptors that it needs; if not, nothing else may be called.
    [[nodiscard]] bool isValid() const { return m_isValid; }

    /// Queues a probe; its promise gets the result during a later `advance`.
    void add(ProbeRequest probe);

    /// Starts probes whose turn it is, and advances those for which something has arrived or whose deadline
    /// has passed; blocks until then if there is nothing to start. Returns whether `wakeFd` is readable.
    [[nodiscard]] bool advance();

private:
    using Clock = Probe::Clock;
    using Id = std::uint64_t;

    struct Item
    {
        Probe probe;
        std::optional<LocalRequest> local; // none while the request is made by m_offHost
        std::uint32_t watchedEvents = 0;   // of the local request's socket
    };
    using Items = std::unordered_map<Id, Item>; // by the number of the request under way

    [[nodiscard]] bool canStart() const;
    void startWaiting();
    [[nodiscard]] int waitMilliseconds() const;
    bool watch(int operation, int descriptor, std::uint32_t events, Id id) const;
    void advanceLocal(Id id);
    void takeOffHostReports();
    void endExpired();

    void startRequest(Items::iterator item);
    [[nodiscard]] OffHostClient *offHost();
    void continueLocal(Items::iterator item);
    void postpone(Items::iterator item);
    void erase(Items::iterator item);
    void endRequest(Items::iterator item, const ResponseHead *response);

    FileDescriptor m_epoll;
    bool m_isValid;
    std::unique_ptr<OffHostClient> m_offHost; // from the first off-host redirect
    Items m_items;
    const size_t m_mostUnderWay;
    std::deque<ProbeRequest> m_waiting;
    bool m_isShort = false; // whether descriptors have run out, until a probe ends
    bool m_hadMuch = false; // whether a response took much memory
    Id m_nextId;
    // Never later than any probe's deadline, which only moves later while a request is under way.
    Clock::time_point m_nextDeadline = Clock::time_point::max();
};

} // namespace portolan
