#include "Printers.h"
#include "StartOptions.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

using Purpose = StartOptions::Purpose;

struct GoodStart
{
    const char *name;
    QStringList arguments;
    StartOptions options;
};

class StartOptionsRead : public testing::TestWithParam<GoodStart>
{};

TEST_P(StartOptionsRead, It)
{
    const auto result = StartOptions::parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<StartOptions>(result));
    EXPECT_TRUE(std::get<StartOptions>(result) == GetParam().options);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StartOptionsRead,
    testing::Values(GoodStart{"Nothing", {}, {Purpose::Run, StartRequest::Open}},
                    GoodStart{"Background", {u"--background"_s}, {Purpose::Run, StartRequest::None}},
                    GoodStart{"Window", {u"--window"_s}, {Purpose::Run, StartRequest::Window}},
                    GoodStart{"Twice", {u"--window"_s, u"--window"_s}, {Purpose::Run, StartRequest::Window}},
                    GoodStart{"Help", {u"--help"_s}, {Purpose::PrintHelp, StartRequest::Open}},
                    GoodStart{"ShortHelp", {u"-h"_s}, {Purpose::PrintHelp, StartRequest::Open}},
                    GoodStart{"Version", {u"--version"_s}, {Purpose::PrintVersion, StartRequest::Open}},
                    GoodStart{"HelpBeforeNonsense",
                              {u"--help"_s, u"--nonsense"_s},
                              {Purpose::PrintHelp, StartRequest::Open}},
                    GoodStart{"HelpAfterWindow",
                              {u"--window"_s, u"--help"_s},
                              {Purpose::PrintHelp, StartRequest::Window}}),
    [](const auto &row) { return row.param.name; });

struct BadStart
{
    const char *name;
    QStringList arguments;
    QString message;
};

class StartOptionsRefuse : public testing::TestWithParam<BadStart>
{};

TEST_P(StartOptionsRefuse, It)
{
    const auto result = StartOptions::parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<StartOptions::Error>(result));
    EXPECT_EQ(std::get<StartOptions::Error>(result).message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StartOptionsRefuse,
    testing::Values(
        BadStart{"UnknownOption", {u"--quiet"_s}, u"unknown option '--quiet'"_s},
        BadStart{"Abbreviation", {u"--back"_s}, u"unknown option '--back'"_s},
        BadStart{"Word", {u"open"_s}, u"unknown option 'open'"_s},
        BadStart{"Empty", {QString()}, u"unknown option ''"_s},
        BadStart{"Value", {u"--window=1"_s}, u"unknown option '--window=1'"_s},
        BadStart{"OptionOfTheToolkit", {u"-style"_s}, u"unknown option '-style'"_s},
        BadStart{"ControlCharacters", {u"\x1b[2J\n.\x07"_s}, u"unknown option '?[2J?.?'"_s},
        BadStart{"Contradiction",
                 {u"--background"_s, u"--window"_s},
                 u"'--background' and '--window' exclude each other"_s},
        BadStart{"NonsenseBeforeHelp", {u"--nonsense"_s, u"--help"_s}, u"unknown option '--nonsense'"_s}),
    [](const auto &row) { return row.param.name; });

} // namespace portolan
