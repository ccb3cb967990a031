#include "CommandLine.h"
#include "Printers.h"

#include <gtest/gtest.h>

#include <array>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using Shape = CommandShape;

constexpr std::array shapes{
    Shape{"list"_L1, Shape::Json | Shape::NoProbe | Shape::Search | Shape::Sort},
    Shape{"watch"_L1, Shape::Json},
    Shape{"stop"_L1, {}, Shape::Operands::some, "PORT|ID"_L1},
    Shape{"open"_L1, {}, Shape::Operands::one, "PORT"_L1},
};

auto parse(const QStringList &arguments)
{
    return CommandLine::parse(arguments, shapes);
}

} // namespace

struct GoodLine
{
    const char *name;
    QStringList arguments;
    CommandLine line;
};

class CommandLineReads : public testing::TestWithParam<GoodLine>
{};

TEST_P(CommandLineReads, It)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLine>(result))
        << std::get<CommandLine::Error>(result).message.toStdString();
    EXPECT_EQ(std::get<CommandLine>(result), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CommandLineReads,
    testing::Values(
        GoodLine{"Nothing", {}, {}}, GoodLine{"Command", {u"watch"_s}, {.command = u"watch"_s}},
        GoodLine{"OptionWithoutCommand", {u"--json"_s}, {.json = true}},
        GoodLine{"Json", {u"list"_s, u"--json"_s}, {.command = u"list"_s, .json = true}},
        GoodLine{"OptionBeforeCommand", {u"--json"_s, u"watch"_s}, {.command = u"watch"_s, .json = true}},
        GoodLine{"NoProbe", {u"list"_s, u"--no-probe"_s}, {.command = u"list"_s, .probe = false}},
        GoodLine{"Search",
                 {u"list"_s, u"--search"_s, u"my shop"_s},
                 {.command = u"list"_s, .search = u"my shop"_s}},
        GoodLine{"SearchForAnOption",
                 {u"list"_s, u"--search"_s, u"--json"_s},
                 {.command = u"list"_s, .search = u"--json"_s}},
        GoodLine{
            "SearchWithEquals", {u"list"_s, u"--search=a=b"_s}, {.command = u"list"_s, .search = u"a=b"_s}},
        GoodLine{"EmptySearch", {u"list"_s, u"--search="_s}, {.command = u"list"_s}},
        GoodLine{
            "Sort", {u"list"_s, u"--sort"_s, u"uptime"_s}, {.command = u"list"_s, .sort = SortOrder::uptime}},
        GoodLine{"LastSortCounts",
                 {u"list"_s, u"--sort=name"_s, u"--sort=status"_s},
                 {.command = u"list"_s, .sort = SortOrder::status}},
        GoodLine{"Operands",
                 {u"stop"_s, u"3000"_s, u"42-3001"_s},
                 {.command = u"stop"_s, .operands = {u"3000"_s, u"42-3001"_s}}},
        GoodLine{"OperandLikeAnOption",
                 {u"open"_s, u"--"_s, u"--3000"_s},
                 {.command = u"open"_s, .operands = {u"--3000"_s}}},
        GoodLine{"Help", {u"--help"_s}, {.help = true}}, GoodLine{"ShortHelp", {u"-h"_s}, {.help = true}},
        GoodLine{"ShortHelpOfACommand", {u"watch"_s, u"-h"_s}, {.command = u"watch"_s, .help = true}},
        GoodLine{"HelpOfACommandThatLacksAnOperand",
                 {u"stop"_s, u"--help"_s},
                 {.command = u"stop"_s, .help = true}},
        GoodLine{"HelpBeforeNonsense", {u"--help"_s, u"--nonsense"_s}, {.help = true}},
        GoodLine{"Version", {u"--version"_s}, {.version = true}}),
    [](const auto &row) { return std::string(row.param.name); });

struct BadLine
{
    const char *name;
    QStringList arguments;
    QString message;
};

class CommandLineRefuses : public testing::TestWithParam<BadLine>
{};

TEST_P(CommandLineRefuses, It)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLine::Error>(result));
    EXPECT_EQ(std::get<CommandLine::Error>(result).message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CommandLineRefuses,
    testing::Values(
        BadLine{"UnknownCommand", {u"lst"_s}, u"unknown command 'lst'"_s},
        BadLine{"EmptyCommand", {u""_s}, u"unknown command ''"_s},
        BadLine{"CommandInCapitals", {u"List"_s}, u"unknown command 'List'"_s},
        BadLine{"UnknownOption", {u"list"_s, u"--jsn"_s}, u"unknown option '--jsn'"_s},
        BadLine{"UnknownOptionWithValue", {u"--a=b"_s}, u"unknown option '--a'"_s},
        BadLine{"ShortOption", {u"list"_s, u"-j"_s}, u"unknown option '-j'"_s},
        BadLine{"ShortOptionsInOne", {u"list"_s, u"-hh"_s}, u"unknown option '-hh'"_s},
        BadLine{"AbbreviatedOption", {u"list"_s, u"--js"_s}, u"unknown option '--js'"_s},
        BadLine{"NonsenseBeforeHelp", {u"--nonsense"_s, u"--help"_s}, u"unknown option '--nonsense'"_s},
        BadLine{"ValueForAFlag", {u"list"_s, u"--json=1"_s}, u"option '--json' takes no value"_s},
        BadLine{"ValueForHelp", {u"--help=list"_s}, u"option '--help' takes no value"_s},
        BadLine{"NoSearchText", {u"list"_s, u"--search"_s}, u"option '--search' needs a value: a text"_s},
        BadLine{"NoOrder",
                {u"list"_s, u"--sort"_s},
                u"option '--sort' needs a value: port, name, status or uptime"_s},
        BadLine{"UnknownOrder",
                {u"list"_s, u"--sort"_s, u"Port"_s},
                u"option '--sort' takes port, name, status or uptime, not 'Port'"_s},
        BadLine{"OptionOfAnotherCommand",
                {u"watch"_s, u"--no-probe"_s},
                u"'watch' does not take option '--no-probe'"_s},
        BadLine{"Operand", {u"list"_s, u"3000"_s}, u"'list' takes no operand: '3000'"_s},
        BadLine{"Dash", {u"list"_s, u"-"_s}, u"'list' takes no operand: '-'"_s},
        BadLine{"NoOperand", {u"stop"_s}, u"'stop' needs an operand: PORT|ID"_s},
        BadLine{"TwoOperands", {u"open"_s, u"1"_s, u"2"_s}, u"'open' takes one operand only: '2'"_s},
        BadLine{"EscapeSequence", {u"\x1b[31m"_s}, u"unknown command '␛[31m'"_s},
        BadLine{"LineBreak", {u"--a\nb"_s}, u"unknown option '--a␊b'"_s}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace portolan
