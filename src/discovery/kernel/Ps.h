#pragma once

#include <string>

#include <sys/types.h>

namespace portolan {

/// What the real ps prints.
namespace Ps {

/// `ps -o etime=,%cpu=,rss= -p PID`: elapsed time, share of a processor and resident memory of one process;
/// nothing when it is gone. Any thread.
[[nodiscard]] std::string stats(pid_t pid);

} // namespace Ps

} // namespace portolan
