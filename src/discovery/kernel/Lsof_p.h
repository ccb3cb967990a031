#pragma once

#include "ListeningSockets.h"
#include "SocketOwners.h"

#include <string>
#include <string_view>
#include <vector>

namespace portolan {

namespace Lsof {

/// A name as lsof prints it: what is not printable becomes an escape, a valid UTF-8 character stays.
[[nodiscard]] std::string escaped(std::string_view name);

/// A socket's local end as lsof prints it, for example "*:3000", "127.0.0.1:3000", "[::1]:3000".
[[nodiscard]] std::string socketName(const ListeningSocket &socket);

/// The listing of `owners`, whose sockets are looked up in `sockets`, which are sorted by inode.
[[nodiscard]] std::string listing(const std::vector<SocketOwner> &owners,
                                  const std::vector<ListeningSocket> &sockets);

/// The name of the executable file that a link like /proc/PID/exe names: its last part, without the mark of a
/// deleted file.
[[nodiscard]] std::string_view executableName(std::string_view link);

} // namespace Lsof

} // namespace portolan
