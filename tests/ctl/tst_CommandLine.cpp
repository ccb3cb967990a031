// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Printers.h"

#include <gtest/gtest.h>

#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using Command = CommandLine::Command;

auto parse(std::vector<const char *> arguments)
{
    arguments.insert(arguments.begin(), "portolanctl");
    return CommandLine::parse(int(arguments.size()), arguments.data());
}

} // namespace

struct GoodLine
{
    const char *name;
    std::vector<const char *> arguments;
    CommandLine line;
};

class CommandLineReads : public testing::TestWithParam<GoodLine>
{};

TEST_P(CommandLineReads, It)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLine>(result))
        << std::get<CommandLine::Reply>(result).text.toStdString();
    EXPECT_EQ(std::get<CommandLine>(result), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CommandLineReads,
    testing::Values(
        GoodLine{"Nothing", {}, {}}, GoodLine{"List", {"list"}, {}},
        GoodLine{"Watch", {"watch"}, {.command = Command::Watch}},
        GoodLine{"OptionWithoutCommand", {"--json"}, {.json = true}},
        GoodLine{"Json", {"list", "--json"}, {.json = true}},
        GoodLine{"FlagTwice", {"--json", "list", "--json"}, {.json = true}},
        GoodLine{"OptionBeforeCommand", {"--json", "watch"}, {.command = Command::Watch, .json = true}},
        GoodLine{"NoProbe", {"list", "--no-probe"}, {.probe = false}},
        GoodLine{"Search", {"list", "--search", "my shop"}, {.search = u"my shop"_s}},
        GoodLine{"SearchForAnOption", {"list", "--search", "--json"}, {.search = u"--json"_s}},
        GoodLine{"SearchWithEquals", {"list", "--search=a=b"}, {.search = u"a=b"_s}},
        GoodLine{"SearchBeyondAscii", {"--search=日本"}, {.search = u"日本"_s}},
        GoodLine{"EmptySearch", {"list", "--search="}, {}},
        GoodLine{"EmptySearchBeforeAnOption", {"list", "--search=", "--json"}, {.json = true}},
        GoodLine{"Sort", {"list", "--sort", "uptime"}, {.sort = SortOrder::uptime}},
        GoodLine{"LastSortCounts", {"list", "--sort=name", "--sort=status"}, {.sort = SortOrder::status}},
        GoodLine{"SortOfTheCommandCounts", {"--sort=name", "list", "--sort=port"}, {.sort = SortOrder::port}},
        GoodLine{"Operands",
                 {"stop", "3000", "42-3001"},
                 {.command = Command::Stop, .operands = {{.port = 3000}, {.port = 3001, .pid = 42}}}},
        GoodLine{"NamesToStop",
                 {"stop", "shop-front", "list"},
                 {.command = Command::Stop, .operands = {{.name = u"shop-front"_s}, {.name = u"list"_s}}}},
        GoodLine{"NameToList", {"list", "shop"}, {.operands = {{.name = u"shop"_s}}}},
        GoodLine{"Wait",
                 {"wait", "3000", "3001"},
                 {.command = Command::Wait, .operands = {{.port = 3000}, {.port = 3001}}}},
        GoodLine{"WaitWithTimeout",
                 {"wait", "--timeout", "1.5", "3000"},
                 {.command = Command::Wait,
                  .operands = {{.port = 3000}},
                  .timeout = std::chrono::milliseconds(1500)}},
        GoodLine{"Hosts",
                 {"list", "--host", "web1", "--host=me@web2", "--host", "web1"},
                 {.hosts = {u"web1"_s, u"me@web2"_s}}},
        GoodLine{"HostWithoutCommand", {"--host", "web1"}, {.hosts = {u"web1"_s}}},
        GoodLine{"HostBeforeOperand",
                 {"stop", "--host", "web1", "3000"},
                 {.command = Command::Stop, .operands = {{.port = 3000}}, .hosts = {u"web1"_s}}},
        GoodLine{"OpenOnAHost",
                 {"open", "--host", "web1", "3000"},
                 {.command = Command::Open, .operands = {{.port = 3000}}, .hosts = {u"web1"_s}}},
        GoodLine{"Open", {"open", "3000"}, {.command = Command::Open, .operands = {{.port = 3000}}}},
        GoodLine{"OperandsAfterTwoDashes",
                 {"stop", "--", "3000", "3001"},
                 {.command = Command::Stop, .operands = {{.port = 3000}, {.port = 3001}}}},
        GoodLine{"CommandAfterTwoDashes",
                 {"--", "stop", "3000"},
                 {.command = Command::Stop, .operands = {{.port = 3000}}}}),
    [](const auto &row) { return std::string(row.param.name); });

struct BadLine
{
    const char *name;
    std::vector<const char *> arguments;
    QString message;
};

class CommandLineRefuses : public testing::TestWithParam<BadLine>
{};

TEST_P(CommandLineRefuses, It)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLine::Reply>(result));
    EXPECT_TRUE(std::get<CommandLine::Reply>(result).isError);
    EXPECT_EQ(std::get<CommandLine::Reply>(result).text, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CommandLineRefuses,
    testing::Values(
        BadLine{"UnknownCommand", {"lst"}, u"unknown command 'lst'"_s},
        BadLine{"EmptyCommand", {""}, u"unknown command ''"_s},
        BadLine{"CommandInCapitals", {"List"}, u"unknown command 'List'"_s},
        BadLine{"UnknownOption", {"--jsn"}, u"unknown option '--jsn'"_s},
        BadLine{"UnknownOptionWithValue", {"--a=b"}, u"unknown option '--a=b'"_s},
        BadLine{"UnknownOptionOfACommand", {"list", "--jsn"}, u"'list' does not take '--jsn'"_s},
        BadLine{"ShortOption", {"list", "-j"}, u"'list' does not take '-j'"_s},
        BadLine{"AbbreviatedOption", {"list", "--js"}, u"'list' does not take '--js'"_s},
        BadLine{"ValueForAFlag", {"list", "--json=maybe"}, u"Could not convert: --json = maybe"_s},
        BadLine{"NoSearchText", {"list", "--search"}, u"option '--search' needs a value"_s},
        BadLine{"NoOrder", {"list", "--sort"}, u"option '--sort' needs a value"_s},
        BadLine{
            "UnknownOrder", {"list", "--sort", "Port"}, u"--sort: Port not in {port,name,status,uptime}"_s},
        BadLine{"OptionOfAnotherCommand", {"stop", "--json", "1"}, u"'stop' does not take '--json'"_s},
        BadLine{"OptionBeforeTheWrongCommand", {"--json", "stop", "1"}, u"stop excludes --json"_s},
        BadLine{"Operand", {"watch", "3000"}, u"'watch' does not take '3000'"_s},
        BadLine{"Dash", {"watch", "-"}, u"'watch' does not take '-'"_s},
        BadLine{
            "DashAsAnOperand", {"list", "-"}, u"'-' is neither a port, an id such as 4242-3000 nor a name"_s},
        BadLine{"SecondCommand", {"watch", "list"}, u"'watch' does not take 'list'"_s},
        BadLine{"NoOperand", {"stop"}, u"PORT|ID|NAME is required"_s},
        BadLine{"NothingToWaitFor", {"wait"}, u"PORT is required"_s},
        BadLine{"NameToWaitFor", {"wait", "shop"}, u"'shop' is no port"_s},
        BadLine{"IdToWaitFor", {"wait", "42-3000"}, u"'42-3000' is no port"_s},
        BadLine{"NoTimeout", {"wait", "1", "--timeout"}, u"option '--timeout' needs a value"_s},
        BadLine{"TimeoutThatIsNoNumber",
                {"wait", "1", "--timeout", "nan"},
                u"--timeout: nan is no number of seconds"_s},
        BadLine{"HostLikeAnOption", {"list", "--host=-oProxyCommand=x"}, u"'-oProxyCommand=x' is no host"_s},
        BadLine{"EmptyHost", {"list", "--host", ""}, u"'' is no host"_s},
        BadLine{"NoHost", {"list", "--host"}, u"option '--host' needs a value"_s},
        BadLine{"TwoHostsToOpen", {"open", "--host=a", "--host=b", "1"}, u"'open' takes one host"_s},
        BadLine{"HostBeforeTheWrongCommand", {"--host=a", "stop", "1"}, u"stop excludes --host"_s},
        BadLine{"NoPort", {"open"}, u"PORT is required"_s},
        BadLine{"TwoOperands", {"open", "1", "2"}, u"'open' does not take '2'"_s},
        BadLine{"OperandThatIsNoPort", {"open", "shop"}, u"'shop' is no port"_s},
        BadLine{"IdToOpen", {"open", "42-3000"}, u"'42-3000' is no port"_s},
        BadLine{"OperandLikeAnOption", {"open", "--", "--3000"}, u"'--3000' is no port"_s},
        BadLine{"NegativePort",
                {"stop", "-3000"},
                u"'-3000' is neither a port, an id such as 4242-3000 nor a name"_s},
        BadLine{"EscapeSequence", {"\x1b[31m"}, u"unknown command '␛[31m'"_s},
        BadLine{"LineBreak", {"--a\nb"}, u"unknown option '--a␊b'"_s},
        BadLine{"EscapeSequenceAsAnOrder",
                {"--sort", "\x1b[31m"},
                u"--sort: ␛[31m not in {port,name,status,uptime}"_s},
        BadLine{"EscapeSequenceAsAnOperand", {"open", "\x1b[31m"}, u"'␛[31m' is no port"_s}),
    [](const auto &row) { return std::string(row.param.name); });

struct Question
{
    const char *name;
    std::vector<const char *> arguments;
    QString answer; ///< a part of what is printed
};

class CommandLineAnswers : public testing::TestWithParam<Question>
{};

TEST_P(CommandLineAnswers, It)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLine::Reply>(result));
    const auto &reply = std::get<CommandLine::Reply>(result);
    EXPECT_FALSE(reply.isError);
    EXPECT_TRUE(reply.text.contains(GetParam().answer)) << reply.text.toStdString();
    EXPECT_TRUE(reply.text.endsWith(u'\n'));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CommandLineAnswers,
    testing::Values(Question{"Help", {"--help"}, u"Usage: portolanctl [OPTIONS] [COMMAND]\n"_s},
                    Question{"ShortHelp", {"-h"}, u"Usage: portolanctl [OPTIONS] [COMMAND]\n"_s},
                    Question{"HelpOfACommand", {"watch", "-h"}, u"Usage: portolanctl watch [OPTIONS]\n"_s},
                    Question{"HelpOfACommandThatLacksAnOperand",
                             {"stop", "--help"},
                             u"Usage: portolanctl stop [OPTIONS] PORT|ID|NAME...\n"_s},
                    Question{"HelpBeforeNonsense", {"--help", "--nonsense"}, u"Usage: "_s},
                    Question{"HelpAfterNonsense", {"--nonsense", "--help"}, u"Usage: "_s},
                    Question{"Version", {"--version"}, u"portolanctl " PORTOLAN_VERSION "\n"_s}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace portolan
