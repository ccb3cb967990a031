// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include <sys/types.h>

namespace portolan {

/// A TCP socket bound to a local address and a port that the kernel chooses. Failures throw.
class LocalSocket
{
public:
    /// Bound but not listening, so that connections to its port are refused.
    [[nodiscard]] static LocalSocket bound(const std::string &address);
    /// Listening; connections succeed but are never accepted or answered.
    [[nodiscard]] static LocalSocket listening(const std::string &address);
    /// A client connected to `server`.
    [[nodiscard]] static LocalSocket connectedTo(const LocalSocket &server);

    ~LocalSocket();
    LocalSocket(LocalSocket &&other) noexcept;
    LocalSocket &operator=(LocalSocket &&) = delete;

    [[nodiscard]] int descriptor() const { return m_descriptor; }
    [[nodiscard]] ino_t inode() const;
    [[nodiscard]] std::uint16_t port() const;

private:
    explicit LocalSocket(int family);

    int m_descriptor;
};

} // namespace portolan
