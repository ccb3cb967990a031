// SPDX-License-Identifier: MIT
#pragma once

#include "ListeningSockets.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace portolan::ListeningSockets {

/// The kernel's answer to a question on its netlink socket; absent where it does not take such questions.
[[nodiscard]] std::optional<std::vector<ListeningSocket>> fromNetlink();
/// The same from /proc/net/tcp and /proc/net/tcp6, which list every connection too.
[[nodiscard]] std::vector<ListeningSocket> fromProc();

enum class Dump { goesOn, done, failed };

/// Appends to `sockets` what one datagram of the kernel's answer holds, and tells whether more are to come. A
/// dump that the kernel could not make, or during which the table changed, has failed.
[[nodiscard]] Dump readMessages(std::span<const char> received, std::vector<ListeningSocket> &sockets);

/// The listening sockets in the text of a /proc/net/tcp, or of a /proc/net/tcp6 with `isIpv6`. Lines of any
/// other form are skipped.
[[nodiscard]] std::vector<ListeningSocket> parseTable(std::string_view text, bool isIpv6);

} // namespace portolan::ListeningSockets
