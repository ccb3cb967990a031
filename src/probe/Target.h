#pragma once

#include <QtGlobal>

#include <optional>
#include <string>
#include <string_view>

/// Where a request goes: to a port of 127.0.0.1 or, where a redirect leads away from there, to an address on
/// the web.
class Target
{
public:
    /// The root of what a port serves.
    explicit Target(quint16 port)
        : m_port(port)
    {}

    /// Where a server here leads with `location`, whole or relative; nothing when that is no address for
    /// HTTP, with TLS or without. Its credentials and its fragment stay behind.
    [[nodiscard]] std::optional<Target> redirected(std::string_view location) const;

    /// Whether it is plain HTTP to 127.0.0.1; only then are there a port, a host and a path.
    [[nodiscard]] bool isLocal() const { return m_elsewhere.empty(); }
    [[nodiscard]] quint16 port() const { return m_port; }
    /// What the Host header says.
    [[nodiscard]] std::string hostAndPort() const;
    /// The path and the query, percent-encoded.
    [[nodiscard]] const std::string &path() const { return m_path; }
    /// The whole address, percent-encoded.
    [[nodiscard]] std::string url() const;

private:
    quint16 m_port;
    std::string m_path = "/";
    std::string m_elsewhere; // the address where it is not local
};
