#pragma once

#include "FileDescriptor.h"
#include "HealthPromise.h"
#include "LocalRequest.h"
#include "Probe.h"
#include "WebRequest.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>

namespace portolan {

/// The probes under way, all driven by the thread that calls `advance`. Belongs to one thread at a time.
class ProbeSet
{
public:
    /// A set of probes whose waits also end when `wakeFd` is readable.
    explicit ProbeSet(int wakeFd);
    /// Probes still under way finish as unreachable.
    ~ProbeSet();
    ProbeSet(const ProbeSet &) = delete;
    ProbeSet &operator=(const ProbeSet &) = delete;

    /// Whether the system had what the set needs; nothing else may be called if not.
    [[nodiscard]] bool isValid() const { return m_isValid; }

    /// Starts to probe `port`; `promise` finishes with the outcome, now or during some later `advance`.
    void add(quint16 port, HealthPromise promise);

    enum class Wait : bool { no, yes };
    /// Does what there is to do, after waiting for it if asked to. Whether `wakeFd` is readable.
    [[nodiscard]] bool advance(Wait wait);

private:
    using Clock = Probe::Clock;
    using Id = std::uint64_t;

    /// A probe and its request under way, which is either local or on the web.
    struct Item
    {
        Item(quint16 port, HealthPromise promise)
            : probe(port, std::move(promise), Clock::now())
        {}

        Probe probe;
        std::optional<LocalRequest> local;
        std::uint32_t watchedEvents = 0; // of the local request's socket
        std::optional<WebRequest> web;
    };

    [[nodiscard]] int waitMilliseconds() const;
    bool watch(int operation, int descriptor, std::uint32_t events, Id id) const;
    void advanceLocal(Id id);
    void advanceWeb();
    void concludeExpired();

    void ask(Id id, Item &item);
    [[nodiscard]] bool startWeb();
    void follow(Id id, Item &item);
    void conclude(Id id, Item &item, const ResponseHead *response);
    void remove(Id id);

    FileDescriptor m_epoll;
    bool m_isValid;
    std::unique_ptr<WebClient> m_webClient; // from the first redirect that leads away from here
    std::unordered_map<Id, Item> m_probes;
    Id m_nextId;
    // Not after any probe's deadline: a deadline only moves away while its request is under way.
    Clock::time_point m_nextDeadline = Clock::time_point::max();
};

} // namespace portolan
