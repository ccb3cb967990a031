// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <sys/types.h>

namespace portolan {

/// A TCP socket that waits for connections.
struct ListeningSocket
{
    ino_t inode = 0;
    std::array<std::uint8_t, 16> address = {}; ///< in network byte order; IPv4 as ::ffff:127.0.0.1
    std::uint16_t port = 0;

    /// Whether it is bound to all addresses or to the loopback address.
    [[nodiscard]] bool isOnAcceptedHost() const;

    friend bool operator==(const ListeningSocket &, const ListeningSocket &) = default;
};

namespace ListeningSockets {

/// The listening TCP sockets of this network namespace, by ascending inode; none if they cannot be read. Any
/// thread.
[[nodiscard]] std::vector<ListeningSocket> read();

} // namespace ListeningSockets

} // namespace portolan
