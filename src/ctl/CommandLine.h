#pragma once

#include "SortOrder.h"

#include <QFlags>
#include <QString>
#include <QStringList>

#include <optional>
#include <span>
#include <variant>

namespace portolan {

/// What a command takes on the command line.
struct CommandShape
{
    enum Option : quint8 {
        Json = 1,
        NoProbe = 2,
        Search = 4,
        Sort = 8,
    };
    Q_DECLARE_FLAGS(Options, Option)

    enum class Operands : quint8 { none, one, some };

    QLatin1StringView name;
    Options options;
    Operands operands = Operands::none;
    QLatin1StringView operandName; ///< as messages call it, e.g. "PORT"
};
Q_DECLARE_OPERATORS_FOR_FLAGS(CommandShape::Options)

/// What the user asked for.
struct CommandLine
{
    QString command; ///< the name of one of the commands; empty when none was named
    QStringList operands;
    bool help = false;
    bool version = false;
    bool json = false;
    bool probe = true;
    QString search;
    std::optional<SortOrder> sort; ///< absent: as stored

    friend bool operator==(const CommandLine &, const CommandLine &) = default;

    /// Why a command line makes no sense: one line for the user.
    struct Error
    {
        QString message;
    };

    /// Reads `arguments` (without the program's name). A pure function. Reading ends at --help (-h) and
    /// --version, whatever follows.
    [[nodiscard]] static std::variant<CommandLine, Error> parse(const QStringList &arguments,
                                                                std::span<const CommandShape> commands);
};

} // namespace portolan
