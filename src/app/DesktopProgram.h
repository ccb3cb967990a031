// SPDX-License-Identifier: MIT
#pragma once

namespace portolan {

/// The program portolan behind its entry point.
namespace DesktopProgram {

/// Does what the command line asks for and returns the exit status.
[[nodiscard]] int run(int argc, char **argv);

} // namespace DesktopProgram

} // namespace portolan
