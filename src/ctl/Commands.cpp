#include "Commands.h"

#include "ListCommand.h"
#include "WatchCommand.h"

#include <array>

using namespace Qt::StringLiterals;

std::span<const Command> commands()
{
    using Shape = CommandShape;
    static constexpr std::array table{
        Command{{"list"_L1, Shape::Json | Shape::NoProbe | Shape::Search | Shape::Sort},
                "the dev servers of this machine, once (also without a command)"_L1,
                ListCommand::run},
        Command{{"watch"_L1, Shape::Json | Shape::NoProbe | Shape::Search | Shape::Sort},
                "the same list, kept up to date until q or Control-C"_L1,
                WatchCommand::run},
    };
    return table;
}
