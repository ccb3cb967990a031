// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "StartOptions.h"

#include <gtest/gtest.h>

#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

auto parse(std::vector<const char *> arguments)
{
    arguments.insert(arguments.begin(), "portolan");
    return StartOptions::parse(int(arguments.size()), arguments.data());
}

} // namespace

struct GoodStart
{
    const char *name;
    std::vector<const char *> arguments;
    StartRequest request;
};

class GoodStartOptions : public testing::TestWithParam<GoodStart>
{};

TEST_P(GoodStartOptions, AreRead)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<StartRequest>(result));
    EXPECT_EQ(std::get<StartRequest>(result), GetParam().request);
}

INSTANTIATE_TEST_SUITE_P(Rows, GoodStartOptions,
                         testing::Values(GoodStart{"Nothing", {}, StartRequest::Open},
                                         GoodStart{"Background", {"--background"}, StartRequest::None},
                                         GoodStart{"Window", {"--window"}, StartRequest::Window},
                                         GoodStart{"NoWindow", {"--window=false"}, StartRequest::Open},
                                         GoodStart{"Twice", {"--window", "--window"}, StartRequest::Window}),
                         [](const auto &row) { return row.param.name; });

struct Question
{
    const char *name;
    std::vector<const char *> arguments;
    QString answer; ///< a part of what is printed
};

class StartQuestions : public testing::TestWithParam<Question>
{};

TEST_P(StartQuestions, AreAnswered)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<StartOptions::Reply>(result));
    EXPECT_FALSE(std::get<StartOptions::Reply>(result).isError);
    EXPECT_TRUE(std::get<StartOptions::Reply>(result).text.contains(GetParam().answer));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StartQuestions,
    testing::Values(Question{"Help", {"--help"}, u"Usage: portolan [OPTIONS]\n"_s},
                    Question{"ShortHelp", {"-h"}, u"Usage: portolan [OPTIONS]\n"_s},
                    Question{"Version", {"--version"}, u"portolan " PORTOLAN_VERSION "\n"_s},
                    Question{"HelpBeforeNonsense", {"--help", "--nonsense"}, u"Usage: "_s},
                    Question{"HelpAfterNonsense", {"--nonsense", "--help"}, u"Usage: "_s},
                    Question{"HelpAfterWindow", {"--window", "--help"}, u"Usage: "_s}),
    [](const auto &row) { return row.param.name; });

struct BadStart
{
    const char *name;
    std::vector<const char *> arguments;
    QString message;
};

class BadStartOptions : public testing::TestWithParam<BadStart>
{};

TEST_P(BadStartOptions, AreRefused)
{
    const auto result = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<StartOptions::Reply>(result));
    EXPECT_TRUE(std::get<StartOptions::Reply>(result).isError);
    EXPECT_EQ(std::get<StartOptions::Reply>(result).text, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BadStartOptions,
    testing::Values(
        BadStart{"UnknownOption", {"--quiet"}, u"unknown option '--quiet'"_s},
        BadStart{"Abbreviation", {"--back"}, u"unknown option '--back'"_s},
        BadStart{"Word", {"open"}, u"unknown option 'open'"_s},
        BadStart{"Empty", {""}, u"unknown option ''"_s},
        BadStart{"Value", {"--window=maybe"}, u"Could not convert: --window = maybe"_s},
        BadStart{"OptionOfTheToolkit", {"-style"}, u"unknown option '-style'"_s},
        BadStart{"ControlCharacters", {"\x1b[2J\n.\x07"}, u"unknown option '?[2J?.?'"_s},
        BadStart{"ControlCharactersInAValue", {"--window=\x1b[2J"}, u"Could not convert: --window = ?[2J"_s},
        BadStart{"Contradiction", {"--background", "--window"}, u"--background excludes --window"_s}),
    [](const auto &row) { return row.param.name; });

} // namespace portolan
