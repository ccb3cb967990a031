#include "Commands.h"

#include "ListCommand.h"
#include "OpenCommand.h"
#include "StopCommand.h"
#include "WatchCommand.h"

#include <array>

namespace portolan {

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
        Command{{"stop"_L1, {}, Shape::Operands::some, "PORT|ID..."_L1},
                "stop the servers on these ports or with these ids (process-port)"_L1,
                StopCommand::run},
        Command{{"open"_L1, {}, Shape::Operands::one, "PORT"_L1},
                "open the server on this port in the browser"_L1,
                OpenCommand::run},
    };
    return table;
}

} // namespace portolan
