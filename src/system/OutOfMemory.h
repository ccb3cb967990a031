// SPDX-License-Identifier: MIT
#pragma once

/// What happens when the program runs out of memory.
namespace portolan::OutOfMemory {

/// Makes the program write `line` to standard error and exit with status 1 when it runs out of memory. Call
/// it first in main(); the text must live as long as the program.
void endsProgramWith(const char *line);

} // namespace portolan::OutOfMemory
