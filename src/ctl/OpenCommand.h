#pragma once

#include "CommandLine.h"

namespace portolan {

/// `portolanctl open PORT`: a server in the browser.
namespace OpenCommand {

/// Has the browser started and says so if that fails soon. Returns the program's exit status.
[[nodiscard]] int run(const CommandLine &line);

} // namespace OpenCommand

} // namespace portolan
