// SPDX-License-Identifier: MIT
#pragma once

#include "HealthPromise.h"
#include "RequestTarget.h"
#include "ResponseHead.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace portolan {

/// A requested probe.
struct ProbeRequest
{
    quint16 port;
    HealthPromise promise; ///< gets the result
};

/// The state machine of one probe of a local port: a HEAD request and, where that gets no response, a GET,
/// each with the redirects that it meets. Does no I/O and reads no clock; the owner makes the requests. Any
/// one thread.
class Probe
{
public:
    using Clock = std::chrono::steady_clock;

    /// How long a request may go without receiving a byte.
    static constexpr std::chrono::milliseconds idleLimit{2500};
    /// How long a request may take in all, redirects included.
    static constexpr std::chrono::milliseconds totalLimit{3000};

    /// The first request starts at `now`.
    Probe(ProbeRequest probe, Clock::time_point now);

    /// The requested probe, to begin it anew.
    [[nodiscard]] ProbeRequest takeBack() { return std::move(m_probe); }

    /// Where to send the request.
    [[nodiscard]] const RequestTarget &target() const { return m_target; }
    /// The bytes of the request.
    [[nodiscard]] std::string requestText() const;

    /// Something arrived for the request under way.
    void received(Clock::time_point now) { m_idleDeadline = now + idleLimit; }
    /// When the request under way counts as failed.
    [[nodiscard]] Clock::time_point deadline() const { return std::min(m_idleDeadline, m_totalDeadline); }

    enum class Next {
        Request, ///< target() and requestText() say which
        End,     ///< the promise has its result
    };
    /// A response to the request under way arrived.
    [[nodiscard]] Next answered(const ResponseHead &response, Clock::time_point now);
    /// The request under way failed; `wasRefused` where nothing listens at its address. With
    /// PORTOLAN_PROBE=localhost, one refused at 127.0.0.1 is made once more, to "localhost", which is ::1
    /// too.
    [[nodiscard]] Next failed(Clock::time_point now, bool wasRefused = false);

private:
    enum class Method { Head, Get };

    void begin(Method method, Clock::time_point now);

    ProbeRequest m_probe;
    Method m_method = Method::Head;
    RequestTarget m_target;
    int m_redirects = 0;
    Clock::time_point m_start;
    Clock::time_point m_idleDeadline;
    Clock::time_point m_totalDeadline;
};

} // namespace portolan
