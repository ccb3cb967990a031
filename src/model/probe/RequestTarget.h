#pragma once

#include <QtGlobal>

#include <optional>
#include <string>
#include <string_view>

namespace portolan {

/// Where a request goes: to a port of this machine's own address or, where a redirect leads away from there,
/// to an address on the web.
class RequestTarget
{
public:
    static constexpr std::string_view ipv4Host = "127.0.0.1";
    static constexpr std::string_view ipv6Host = "[::1]";
    static constexpr std::string_view eitherHost = "localhost";

    /// The root of what a port serves at 127.0.0.1.
    explicit RequestTarget(quint16 port)
        : m_port(port)
    {}

    /// Where a server here leads with `location`, whole or relative; nothing when that is no address for
    /// HTTP, with TLS or without. Its credentials and its fragment stay behind.
    [[nodiscard]] std::optional<RequestTarget> redirected(std::string_view location) const;

    /// Whether it is plain HTTP to one of the hosts above; only then are there a host, a port and a path.
    [[nodiscard]] bool isLocal() const { return m_elsewhere.empty(); }
    [[nodiscard]] std::string_view host() const { return m_host; }
    [[nodiscard]] quint16 port() const { return m_port; }
    /// What the Host header says.
    [[nodiscard]] std::string hostAndPort() const;
    /// The path and the query, percent-encoded.
    [[nodiscard]] const std::string &path() const { return m_path; }
    /// The whole address, percent-encoded.
    [[nodiscard]] std::string url() const;

private:
    std::string_view m_host = ipv4Host;
    quint16 m_port;
    std::string m_path = "/";
    std::string m_elsewhere; // the address where it is not local
};

} // namespace portolan
