#pragma once

#include "FileDescriptor.h"
#include "HealthPromise.h"
#include "LocalRequest.h"
#include "Probe.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>

namespace portolan {

class OffHostClient;

/// The probes under way, with one request each. Belongs to one thread at a time, which drives them by calling
/// `advance`.
class ProbeSet
{
public:
    /// A set of probes whose waits also end when `wakeFd` is readable.
    explicit ProbeSet(int wakeFd);
    /// Probes still under way finish as unreachable.
    ~ProbeSet();
    ProbeSet(const ProbeSet &) = delete;
    ProbeSet &operator=(const ProbeSet &) = delete;

    /// Whether the system had the descriptors that the set needs; nothing else may be called if not.
    [[nodiscard]] bool isValid() const { return m_isValid; }

    /// Starts to probe `port`; `promise` gets the result now or during a later `advance`.
    void add(quint16 port, HealthPromise promise);

    enum class Wait : bool { No, Yes };
    /// Goes on with every probe that something has arrived for or whose time is up, after waiting for that if
    /// asked to. Whether `wakeFd` is readable.
    [[nodiscard]] bool advance(Wait wait);

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

    [[nodiscard]] int waitMilliseconds() const;
    bool watch(int operation, int descriptor, std::uint32_t events, Id id) const;
    void advanceLocal(Id id);
    void takeOffHostReports();
    void endExpired();

    void startRequest(Items::iterator item);
    [[nodiscard]] OffHostClient *offHost();
    void continueLocal(Items::iterator item);
    void endRequest(Items::iterator item, const ResponseHead *response);

    FileDescriptor m_epoll;
    bool m_isValid;
    std::unique_ptr<OffHostClient> m_offHost; // from the first off-host redirect
    Items m_items;
    Id m_nextId;
    // Not after any probe's deadline: while a request is under way, its deadline only moves later.
    Clock::time_point m_nextDeadline = Clock::time_point::max();
};

} // namespace portolan
