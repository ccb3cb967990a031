#pragma once

#include "CommandLine.h"

#include <span>

namespace portolan {

/// What portolanctl can do: one row per command.
struct Command
{
    CommandShape shape;
    QLatin1StringView summary;
    /// Does it; a QCoreApplication exists. Returns the program's exit status.
    int (*run)(const CommandLine &line);
};

/// All commands, in the order in which the help names them; the first is done where none is named.
[[nodiscard]] std::span<const Command> commands();

} // namespace portolan
