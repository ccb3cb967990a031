// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "TerminalColors.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;
using Depth = TerminalColors::Depth;

struct DepthCase
{
    const char *name;
    QByteArray term;
    QByteArray colorTerm;
    QByteArray noColor;
    Depth depth;
};

class TerminalColorDepth : public testing::TestWithParam<DepthCase>
{};

TEST_P(TerminalColorDepth, FollowsTheEnvironment)
{
    const DepthCase &row = GetParam();
    EXPECT_EQ(TerminalColors::depthOfTerminal(row.term, row.colorTerm, row.noColor), row.depth);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TerminalColorDepth,
    testing::Values(DepthCase{"TrueColor", "xterm-256color", "truecolor", "", Depth::TrueColor},
                    DepthCase{"TrueColorBits", "xterm", "24bit", "", Depth::TrueColor},
                    DepthCase{"Palette256", "xterm-256color", "", "", Depth::Palette256},
                    DepthCase{"Sixteen", "linux", "", "", Depth::Sixteen},
                    DepthCase{"UnknownColorTerm", "xterm", "1", "", Depth::Sixteen},
                    DepthCase{"Unwanted", "xterm-256color", "truecolor", "1", Depth::None},
                    DepthCase{"Dumb", "dumb", "truecolor", "", Depth::None},
                    DepthCase{"NoTerm", "", "", "", Depth::None}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(TerminalColors, WritesTheStatesInTheDesktopsColours)
{
    EXPECT_EQ(TerminalColors(Depth::TrueColor).styled(TextStyle::Online, u"x"_s),
              u"\x1b[38;2;34;197;94mx\x1b[0m"_s);
    EXPECT_EQ(TerminalColors(Depth::TrueColor).styled(TextStyle::Offline, u"x"_s),
              u"\x1b[38;2;244;63;94mx\x1b[0m"_s);
    EXPECT_EQ(TerminalColors(Depth::TrueColor).styled(TextStyle::Pending, u"x"_s),
              u"\x1b[38;2;234;179;8mx\x1b[0m"_s);
    EXPECT_EQ(TerminalColors(Depth::TrueColor).styled(TextStyle::Accent, u"x"_s),
              u"\x1b[38;2;59;130;246mx\x1b[0m"_s);
    EXPECT_EQ(TerminalColors(Depth::Palette256).styled(TextStyle::Online, u"x"_s),
              u"\x1b[38;5;41mx\x1b[0m"_s);
    EXPECT_EQ(TerminalColors(Depth::Sixteen).styled(TextStyle::Online, u"x"_s), u"\x1b[32mx\x1b[0m"_s);
    EXPECT_EQ(TerminalColors(Depth::Sixteen).styled(TextStyle::Faint, u"x"_s), u"\x1b[2mx\x1b[0m"_s);
}

TEST(TerminalColors, LeavesPlainAndEmptyTextsAlone)
{
    EXPECT_EQ(TerminalColors().styled(TextStyle::Online, u"x"_s), u"x"_s);
    EXPECT_EQ(TerminalColors(Depth::TrueColor).styled(TextStyle::Plain, u"x"_s), u"x"_s);
    EXPECT_EQ(TerminalColors(Depth::TrueColor).styled(TextStyle::Online, QString()), QString());
}

} // namespace portolan
