// SPDX-License-Identifier: MIT
#pragma once

#include "CommandLine.h"

namespace portolan {

/// The commands of portolanctl: one function each, in a source of its own (ListCommand.cpp and so on). They
/// need a QCoreApplication and return the program's exit status.
namespace Commands {

/// Scans, probes and prints once.
[[nodiscard]] int list(const CommandLine &line);
/// Shows the list and keeps it up to date until the user ends it.
[[nodiscard]] int watch(const CommandLine &line);
/// Waits until the operands' ports answer HTTP, at most until the timeout of the command line.
[[nodiscard]] int wait(const CommandLine &line);
/// Stops the servers that the operands mean, waits until they have ended, and reports it.
[[nodiscard]] int stop(const CommandLine &line);
/// Opens a server in the browser; reports a failure that happens soon.
[[nodiscard]] int open(const CommandLine &line);

} // namespace Commands

/// Exit statuses of the program.
namespace ExitStatus {

constexpr int success = 0;
constexpr int failure = 1;
constexpr int usageError = 2;

/// The result of a command that `signal` has ended; the program then raises that signal.
[[nodiscard]] constexpr int endedBy(int signal)
{
    return 128 + signal;
}

} // namespace ExitStatus

} // namespace portolan
