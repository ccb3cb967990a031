#pragma once

#include "CommandLine.h"

namespace portolan {

/// `portolanctl watch`: the living list, on the terminal or as JSON.
namespace WatchCommand {

/// Shows the list until the user ends it. Returns the program's exit status.
[[nodiscard]] int run(const CommandLine &line);

} // namespace WatchCommand

} // namespace portolan
