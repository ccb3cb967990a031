#include "Ink.h"
#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;
using Depth = Ink::Depth;

struct DepthCase
{
    const char *name;
    QByteArray term;
    QByteArray colorTerm;
    QByteArray noColor;
    Depth depth;
};

class InkDepth : public testing::TestWithParam<DepthCase>
{};

TEST_P(InkDepth, FollowsTheEnvironment)
{
    const DepthCase &row = GetParam();
    EXPECT_EQ(Ink::depthOfTerminal(row.term, row.colorTerm, row.noColor), row.depth);
}

INSTANTIATE_TEST_SUITE_P(Rows, InkDepth,
                         testing::Values(DepthCase{"Exact", "xterm-256color", "truecolor", "", Depth::exact},
                                         DepthCase{"ExactBits", "xterm", "24bit", "", Depth::exact},
                                         DepthCase{"Palette", "xterm-256color", "", "", Depth::palette},
                                         DepthCase{"Sixteen", "linux", "", "", Depth::sixteen},
                                         DepthCase{"UnknownColorTerm", "xterm", "1", "", Depth::sixteen},
                                         DepthCase{"Unwanted", "xterm-256color", "truecolor", "1",
                                                   Depth::none},
                                         DepthCase{"Dumb", "dumb", "truecolor", "", Depth::none},
                                         DepthCase{"NoTerm", "", "", "", Depth::none}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(Ink, WritesTheStatesInTheDesktopsColours)
{
    EXPECT_EQ(Ink(Depth::exact)(Tone::online, u"x"_s), u"\x1b[38;2;34;197;94mx\x1b[0m"_s);
    EXPECT_EQ(Ink(Depth::exact)(Tone::offline, u"x"_s), u"\x1b[38;2;244;63;94mx\x1b[0m"_s);
    EXPECT_EQ(Ink(Depth::exact)(Tone::pending, u"x"_s), u"\x1b[38;2;234;179;8mx\x1b[0m"_s);
    EXPECT_EQ(Ink(Depth::exact)(Tone::accent, u"x"_s), u"\x1b[38;2;59;130;246mx\x1b[0m"_s);
    EXPECT_EQ(Ink(Depth::palette)(Tone::online, u"x"_s), u"\x1b[38;5;41mx\x1b[0m"_s);
    EXPECT_EQ(Ink(Depth::sixteen)(Tone::online, u"x"_s), u"\x1b[32mx\x1b[0m"_s);
    EXPECT_EQ(Ink(Depth::sixteen)(Tone::faint, u"x"_s), u"\x1b[2mx\x1b[0m"_s);
}

TEST(Ink, LeavesPlainAndEmptyTextsAlone)
{
    EXPECT_EQ(Ink()(Tone::online, u"x"_s), u"x"_s);
    EXPECT_EQ(Ink(Depth::exact)(Tone::plain, u"x"_s), u"x"_s);
    EXPECT_EQ(Ink(Depth::exact)(Tone::online, QString()), QString());
}

} // namespace portolan
