#pragma once

#include "CommandLine.h"

namespace portolan {

/// `portolanctl stop PORT|ID...`: ends servers and sees to it that they end.
namespace StopCommand {

/// Stops what the operands mean, waits until it has ended, and says so. Returns the program's exit status.
[[nodiscard]] int run(const CommandLine &line);

} // namespace StopCommand

} // namespace portolan
