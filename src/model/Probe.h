#pragma once

#include "Curl.h"
#include "HealthPromise.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>

/// One probe of one local port on a client handle of its own: a HEAD request and, where that gets no
/// response, a GET. Knows when it has waited long enough and keeps the promise of its outcome; whoever drives
/// the handle tells it what happened.
class Probe
{
public:
    using Clock = std::chrono::steady_clock;

    /// How long a request may go without receiving a byte.
    static constexpr std::chrono::milliseconds idleLimit{2500};
    /// How long a request may take in all, redirects and body included. A body that never ends is a failure.
    static constexpr std::chrono::milliseconds totalLimit{3000};

    /// `curl` is the library.
    Probe(const Curl &curl, quint16 port, HealthPromise promise);
    Probe(const Probe &) = delete;
    Probe &operator=(const Probe &) = delete;

    [[nodiscard]] CURL *handle() const { return m_handle.get(); }

    /// The handle's request goes out now.
    void begin(Clock::time_point now);
    /// Something arrived for the request under way.
    void received(Clock::time_point now) { m_idleDeadline = now + idleLimit; }
    /// When the request under way has failed for want of time.
    [[nodiscard]] Clock::time_point deadline() const { return std::min(m_idleDeadline, m_totalDeadline); }
    /// The request ended with `code`. Whether the probe ended with it; otherwise the handle has become a GET
    /// that is to be sent.
    [[nodiscard]] bool conclude(CURLcode code, Clock::time_point now);

private:
    static size_t countHeader(char *line, size_t size, size_t count, void *probe);
    [[nodiscard]] std::optional<qint64> responseStatus(CURLcode code) const;

    const Curl &m_curl;
    HealthPromise m_promise;
    std::unique_ptr<CURL, decltype(Curl::easy_cleanup)> m_handle;
    bool m_isFallback = false;
    size_t m_headerBytes = 0;
    std::optional<Clock::time_point> m_start;
    Clock::time_point m_idleDeadline;
    Clock::time_point m_totalDeadline;
};
