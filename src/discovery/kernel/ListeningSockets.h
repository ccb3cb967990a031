// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace portolan {

/// A TCP socket that waits for connections.
struct ListeningSocket
{
    ino_t inode = 0;
    bool isIpv6 = false;
    std::array<std::uint8_t, 16> address = {}; ///< in network order; the first four bytes for IPv4
    std::uint16_t port = 0;
    std::uint32_t pending = 0; ///< connections that nobody has accepted yet

    /// Whether it is bound to all addresses or to the loopback address, be that as IPv4 in IPv6.
    [[nodiscard]] bool isOnAcceptedHost() const;

    friend bool operator==(const ListeningSocket &, const ListeningSocket &) = default;
};

namespace ListeningSockets {

/// The listening TCP sockets of this network namespace that a process can hold, by ascending inode; absent
/// when the kernel does not tell. Any thread.
[[nodiscard]] std::optional<std::vector<ListeningSocket>> read();

} // namespace ListeningSockets

} // namespace portolan
