// SPDX-License-Identifier: MIT
#pragma once

#include "ServiceOperand.h"
#include "SortOrder.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <variant>

namespace portolan {

/// The parsed command line of portolanctl.
struct CommandLine
{
    enum class Command : quint8 { List, Watch, Wait, Stop, Open };

    Command command = Command::List;
    QList<ServiceOperand> operands; ///< at least one for Wait (only ports) and Stop; one port for Open
    QStringList hosts;              ///< the arguments of --host; empty: this machine
    std::optional<std::chrono::milliseconds> timeout; ///< of Wait
    bool json = false;
    bool probe = true;
    QString search;
    std::optional<SortOrder> sort; ///< absent: as stored

    friend bool operator==(const CommandLine &, const CommandLine &) = default;

    /// What is printed instead of running a command: the help, the version, or one line that says why the
    /// command line is invalid. Control characters in the arguments are made visible.
    struct Reply
    {
        QString text;
        bool isError = false;
    };

    /// Reads the arguments of main().
    [[nodiscard]] static std::variant<CommandLine, Reply> parse(int argc, const char *const *argv);
};

} // namespace portolan
