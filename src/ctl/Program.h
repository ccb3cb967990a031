#pragma once

#include <QString>

/// The program portolanctl behind its entry point.
namespace Program {

/// Exit statuses besides those of the commands themselves.
constexpr int usageError = 2;

/// Does what the command line asks for and returns the exit status.
[[nodiscard]] int run(int argc, char **argv);

/// What --help prints.
[[nodiscard]] QString helpText();

} // namespace Program
