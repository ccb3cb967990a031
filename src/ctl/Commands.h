// SPDX-License-Identifier: MIT
#pragma once

#include "CommandLine.h"

namespace portolan {

/// What portolanctl can do: one function per command, each in a source of its own (ListCommand.cpp and so
/// on). They need a QCoreApplication and return the program's exit status.
namespace Commands {

/// Scans, probes and prints once.
[[nodiscard]] int list(const CommandLine &line);
/// Shows the list and keeps it up to date until the user ends it.
[[nodiscard]] int watch(const CommandLine &line);
/// Waits until the operands' ports answer HTTP, or for the time that the command line gives them.
[[nodiscard]] int wait(const CommandLine &line);
/// Stops the servers that the operands mean, waits until they have ended, and reports it.
[[nodiscard]] int stop(const CommandLine &line);
/// Opens a server in the browser; reports it where that fails soon.
[[nodiscard]] int open(const CommandLine &line);

} // namespace Commands

/// Exit statuses of the program.
namespace ExitStatus {

constexpr int success = 0;
constexpr int failure = 1;
constexpr int usageError = 2;

/// What a command returns that `signal` has ended; the program then dies of that signal.
[[nodiscard]] constexpr int endedBy(int signal)
{
    return 128 + signal;
}

} // namespace ExitStatus

} // namespace portolan
