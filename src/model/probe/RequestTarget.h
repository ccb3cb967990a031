// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>
#include <string>
#include <string_view>

namespace portolan {

/// The address of a request: plain HTTP to a port of this machine or, after an off-host redirect, any other
/// http or https address. Immutable; any thread.
class RequestTarget
{
public:
    static constexpr std::string_view ipv4Host = "127.0.0.1";
    static constexpr std::string_view ipv6Host = "[::1]";
    static constexpr std::string_view eitherHost = "localhost";

    /// http://127.0.0.1:`port`/
    explicit RequestTarget(quint16 port)
        : m_port(port)
    {}

    /// The target of a redirect from here to `location`, absolute or relative; nothing if its scheme is
    /// neither http nor https. Credentials and fragment are dropped.
    [[nodiscard]] std::optional<RequestTarget> redirected(std::string_view location) const;

    /// The same on the host "localhost".
    [[nodiscard]] RequestTarget onLocalhost() const;

    /// Whether it is plain HTTP to one of the hosts above.
    [[nodiscard]] bool isLocal() const;
    [[nodiscard]] bool isTls() const { return m_isTls; }
    /// The host as in a URL, with an IPv6 address in brackets.
    [[nodiscard]] const std::string &host() const { return m_host; }
    [[nodiscard]] quint16 port() const { return m_port; }
    /// The value of the Host header.
    [[nodiscard]] std::string hostAndPort() const;
    /// The path and the query, percent-encoded.
    [[nodiscard]] const std::string &path() const { return m_path; }
    /// The whole address, percent-encoded.
    [[nodiscard]] std::string url() const;

private:
    bool m_isTls = false;
    std::string m_host{ipv4Host};
    quint16 m_port;
    std::string m_path = "/";
};

} // namespace portolan
