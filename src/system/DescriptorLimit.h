// SPDX-License-Identifier: MIT
#pragma once

/// How many descriptors this program may have open. A desktop gives its programs 1,024; a probe of every
/// server at once can take more.
namespace portolan::DescriptorLimit {

/// Raises the soft limit as far as the program can make use of it and its hard limit allows. Call first in
/// main(), once.
void raise();

/// The soft limit at present.
[[nodiscard]] int current();

/// Gives a program that is being started the soft limit that this one was started with, and no more than
/// `most`. For the time between vfork and exec.
void restore(int most);

} // namespace portolan::DescriptorLimit
