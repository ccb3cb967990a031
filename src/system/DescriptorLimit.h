// SPDX-License-Identifier: MIT
#pragma once

/// How many descriptors this program may have open. The usual soft limit is 1,024; probing every server at
/// once can take more.
namespace portolan::DescriptorLimit {

/// Raises the soft limit to what the program can use, within the hard limit. Call it once, first in main().
void raise();

/// The soft limit at present.
[[nodiscard]] int current();

/// Gives a program that is being started the soft limit that this one was started with, but no more than
/// `most`. To be called between vfork and exec.
void restore(int most);

} // namespace portolan::DescriptorLimit
