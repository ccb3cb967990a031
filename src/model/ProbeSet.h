#pragma once

#include "FileDescriptor.h"
#include "HealthPromise.h"
#include "Probe.h"

#include <memory>
#include <unordered_map>

/// The probes under way, all driven by the thread that calls `advance`. Belongs to one thread at a time.
class ProbeSet
{
public:
    /// A set of probes by `curl` whose waits also end when `wakeFd` is readable.
    ProbeSet(const Curl &curl, int wakeFd);
    /// Probes still under way finish as unreachable.
    ~ProbeSet();
    ProbeSet(const ProbeSet &) = delete;
    ProbeSet &operator=(const ProbeSet &) = delete;

    /// Whether the system had what the set needs; nothing else may be called if not.
    [[nodiscard]] bool isValid() const { return m_multi && m_epoll.isOpen(); }

    /// Starts to probe `port`; `promise` finishes with the outcome during some later `advance`.
    void add(quint16 port, HealthPromise promise);

    enum class Wait : bool { no, yes };
    /// Does what there is to do, after waiting for it if asked to. Whether `wakeFd` is readable.
    [[nodiscard]] bool advance(Wait wait);

private:
    using Clock = Probe::Clock;

    static int watchSocket(CURL *handle, curl_socket_t socket, int what, void *set, void *isWatched);
    static int setTimer(CURLM *multi, long milliseconds, void *set);

    [[nodiscard]] int waitMilliseconds() const;
    void act(curl_socket_t socket, int what);
    void handleSocket(curl_socket_t socket, uint32_t events);
    void concludeEnded();
    void concludeExpired();
    void conclude(CURL *handle, CURLcode code);
    void begin(Probe &probe);

    const Curl &m_curl;
    int m_wakeFd;
    FileDescriptor m_epoll;
    std::unordered_map<CURL *, std::unique_ptr<Probe>> m_probes;
    std::unordered_map<curl_socket_t, Probe *> m_probeOfSocket; // null for the library's own
    std::unique_ptr<CURLM, decltype(Curl::multi_cleanup)>
        m_multi; // ends first: it may still call watchSocket()
    Clock::time_point m_timer = Clock::time_point::max();
    // Not after any probe's deadline: a deadline only moves away while its request is under way.
    Clock::time_point m_nextDeadline = Clock::time_point::max();
};
