// SPDX-License-Identifier: MIT
#pragma once

/// What happens when the system gives the program no more memory.
namespace portolan::OutOfMemory {

/// From then on the program writes `line` to standard error and ends with status 1. Call first in main(); the
/// text must live as long as the program.
void endsProgramWith(const char *line);

} // namespace portolan::OutOfMemory
