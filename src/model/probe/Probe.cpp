// SPDX-License-Identifier: MIT
#include "Probe.h"

namespace portolan {

namespace {

constexpr int maxRedirects = 20;

} // namespace

Probe::Probe(ProbeRequest probe, Clock::time_point now)
    : m_probe(std::move(probe))
    , m_target(m_probe.port)
    , m_start(now)
{
    begin(Method::Head, now);
}

std::string Probe::requestText() const
{
    std::string text;
    text.reserve(128);
    text += m_method == Method::Head ? "HEAD " : "GET ";
    text += m_target.path();
    text += " HTTP/1.1\r\nHost: ";
    text += m_target.hostAndPort();
    text += "\r\nUser-Agent: Portolan\r\nAccept: */*\r\n\r\n";
    return text;
}

Probe::Next Probe::answered(const ResponseHead &response, Clock::time_point now)
{
    if (response.redirect().empty()) {
        const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_start);
        m_probe.promise.setResult(Health::healthy(response.status(), elapsed.count()));
        return Next::End;
    }
    auto target = m_target.redirected(response.redirect());
    if (!target || ++m_redirects > maxRedirects)
        return failed(now);
    m_target = std::move(*target);
    return Next::Request;
}

Probe::Next Probe::failed(Clock::time_point now, bool wasRefused)
{
    if (wasRefused && m_target.host() == RequestTarget::ipv4Host &&
        qgetenv("PORTOLAN_PROBE") == "localhost") {
        m_target = m_target.onLocalhost();
        return Next::Request;
    }
    if (m_method == Method::Get) {
        m_probe.promise.setResult(Health::unreachable());
        return Next::End;
    }
    begin(Method::Get, now);
    return Next::Request;
}

void Probe::begin(Method method, Clock::time_point now)
{
    m_method = method;
    m_target = RequestTarget(m_probe.port);
    m_redirects = 0;
    m_idleDeadline = now + idleLimit;
    m_totalDeadline = now + totalLimit;
}

} // namespace portolan
