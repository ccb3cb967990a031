// SPDX-License-Identifier: MIT
#pragma once

#include "ListeningSockets.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace portolan::ListeningSockets {

/// The sockets by netlink; absent where the kernel does not support that.
[[nodiscard]] std::optional<std::vector<ListeningSocket>> fromNetlink();
/// The same from /proc/net/tcp and /proc/net/tcp6, which also list every connection.
[[nodiscard]] std::vector<ListeningSocket> fromProc();

enum class Dump { goesOn, done, failed };

/// Appends the sockets in one datagram of the kernel's answer to `sockets`, and returns whether more are to
/// come. A dump with an error, or during which the table changed, has failed.
[[nodiscard]] Dump readMessages(std::span<const char> received, std::vector<ListeningSocket> &sockets);

/// The listening sockets in the text of /proc/net/tcp or, with `isIpv6`, of /proc/net/tcp6. Malformed lines
/// are skipped.
[[nodiscard]] std::vector<ListeningSocket> parseTable(std::string_view text, bool isIpv6);

} // namespace portolan::ListeningSockets
