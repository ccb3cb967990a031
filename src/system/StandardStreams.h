// SPDX-License-Identifier: MIT
#pragma once

/// Standard input, output and error of the process.
namespace portolan::StandardStreams {

/// Opens /dev/null in place of those that were closed when the program started, so that no other file gets
/// their numbers and is written to by accident. Writing to it fails, as to a closed descriptor. Call it first
/// in main().
void reserve();

} // namespace portolan::StandardStreams
