#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

namespace portolan {

/// What the real lsof prints under a UTF-8 locale, where it is right.
namespace Lsof {

/// `lsof -nP -iTCP -sTCP:LISTEN -FpcnPT`: the listening TCP sockets of every process that may be looked into.
/// Absent when the kernel's tables cannot be read. Any thread; calls wait for each other.
[[nodiscard]] std::optional<std::string> listeners();

/// `lsof -a -p PID -d cwd -Fn`: the working directory of one process; nothing when it is gone. Any thread.
[[nodiscard]] std::string workingDirectory(pid_t pid);

} // namespace Lsof

} // namespace portolan
