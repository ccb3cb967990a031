#pragma once

#include "HealthPromise.h"
#include "RequestTarget.h"
#include "ResponseHead.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace portolan {

/// One probe of one local port: a HEAD request and, where that gets no response, a GET, each with the
/// redirects that it meets. Knows what is to be asked next, when it has waited long enough and what has come
/// out, and keeps the promise of that; whoever drives it does the asking.
class Probe
{
public:
    using Clock = std::chrono::steady_clock;

    /// How long a request may go without receiving a byte.
    static constexpr std::chrono::milliseconds idleLimit{2500};
    /// How long a request may take in all, redirects included.
    static constexpr std::chrono::milliseconds totalLimit{3000};

    /// The first request goes out at `now`.
    Probe(quint16 port, HealthPromise promise, Clock::time_point now);

    enum class Method { head, get };
    /// What is to be asked, and where.
    [[nodiscard]] Method method() const { return m_method; }
    [[nodiscard]] const RequestTarget &target() const { return m_target; }

    /// Something arrived for the request under way.
    void received(Clock::time_point now) { m_idleDeadline = now + idleLimit; }
    /// When the request under way has failed for want of time.
    [[nodiscard]] Clock::time_point deadline() const { return std::min(m_idleDeadline, m_totalDeadline); }

    enum class Next {
        ask, ///< what method() and target() now say
        end, ///< the promise is kept
    };
    /// A response came.
    [[nodiscard]] Next answered(const ResponseHead &response, Clock::time_point now);
    /// The request failed.
    [[nodiscard]] Next failed(Clock::time_point now);
    /// The target is away from here, and there is nothing to ask there with: the redirect is the answer.
    void settleForRedirect(Clock::time_point now) { end(now); }

private:
    void begin(Method method, Clock::time_point now);
    void end(Clock::time_point now);

    HealthPromise m_promise;
    quint16 m_port;
    Method m_method = Method::head;
    RequestTarget m_target;
    int m_redirects = 0;
    int m_status = 0; // of the last response
    Clock::time_point m_start;
    Clock::time_point m_idleDeadline;
    Clock::time_point m_totalDeadline;
};

} // namespace portolan
