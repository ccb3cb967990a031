#pragma once

#include <QString>

namespace portolan {

/// The program portolanctl behind its entry point.
namespace Program {

/// Exit statuses besides those of the commands themselves.
constexpr int usageError = 2;
/// What a command returns that a signal has ended.
[[nodiscard]] constexpr int endedBy(int signal)
{
    return 128 + signal;
}

/// Does what the command line asks for and returns the exit status. Does not return where a signal ended the
/// command: the program then dies of it.
[[nodiscard]] int run(int argc, char **argv);

/// What --help prints.
[[nodiscard]] QString helpText();

} // namespace Program

} // namespace portolan
