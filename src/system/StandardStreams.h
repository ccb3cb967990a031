// SPDX-License-Identifier: MIT
#pragma once

/// Standard input, output and error of the process.
namespace portolan::StandardStreams {

/// Opens nothingness in the place of those that were closed when the program started, so that nothing else is
/// opened there and written to by accident. Writing to it fails, as to a closed one. Call first in main().
void reserve();

} // namespace portolan::StandardStreams
