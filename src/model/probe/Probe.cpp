#include "Probe.h"

namespace portolan {

namespace {

constexpr int maxRedirects = 20;

} // namespace

Probe::Probe(quint16 port, HealthPromise promise, Clock::time_point now)
    : m_promise(std::move(promise))
    , m_port(port)
    , m_target(port)
    , m_start(now)
{
    begin(Method::head, now);
}

Probe::Next Probe::answered(const ResponseHead &response, Clock::time_point now)
{
    m_status = response.status();
    if (response.redirect().empty()) {
        end(now);
        return Next::end;
    }
    auto target = m_target.redirected(response.redirect());
    if (!target || ++m_redirects > maxRedirects)
        return failed(now);
    m_target = std::move(*target);
    return Next::ask;
}

Probe::Next Probe::failed(Clock::time_point now)
{
    if (m_method == Method::get) {
        m_promise.keep(Health::unreachable());
        return Next::end;
    }
    begin(Method::get, now);
    return Next::ask;
}

void Probe::begin(Method method, Clock::time_point now)
{
    m_method = method;
    m_target = RequestTarget(m_port);
    m_redirects = 0;
    m_idleDeadline = now + idleLimit;
    m_totalDeadline = now + totalLimit;
}

void Probe::end(Clock::time_point now)
{
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_start);
    m_promise.keep(Health::healthy(m_status, elapsed.count()));
}

} // namespace portolan
