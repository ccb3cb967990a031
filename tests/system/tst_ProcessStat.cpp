// SPDX-License-Identifier: MIT
#include "ProcessStat.h"

#include <gtest/gtest.h>

namespace portolan {

static std::string statOf(const std::string &command)
{
    return "4242 (" + command +
           ") S 1 4242 4242 0 -1 4194560 1500 20 3 0 119 381 7 8 20 0 11 0 147653 18894848 2927 "
           "18446744073709551615 94065824116736 94065824117077 140737054398640 0 0 0 0 16781312 2 1 0 0 17 0 "
           "0 0\n";
}

class ProcessStatName : public testing::TestWithParam<std::string>
{};

TEST_P(ProcessStatName, IsTakenAsItIs)
{
    const ProcessStat expected{.command = GetParam(), .state = 'S', .cpuTicks = 500, .startTicks = 147653};
    EXPECT_EQ(parseProcessStat(statOf(GetParam())), expected);
}

INSTANTIATE_TEST_SUITE_P(Names, ProcessStatName,
                         testing::Values("node", "", " ", "next-server (v1", ")", "(", ")(", "a) S 1 2 3",
                                         "a) Z 1", "ok (x)", " lead", "trail ", "a  b", "a\nb", "\n", "a\tb",
                                         "\\", "\xff\xfe", "caf\xc3\xa9", "123456789012345"));

TEST(ProcessStat, KnowsWhoHasEnded)
{
    EXPECT_TRUE(parseProcessStat("7 (sh) Z 1 7 7 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 147653 0 0")->isZombie());
    EXPECT_FALSE(parseProcessStat(statOf("a) Z 1"))->isZombie());
}

TEST(ProcessStat, IsAbsentForAnyOtherForm)
{
    const std::string whole = statOf("node");
    const size_t startTicksEnd = whole.find("147653") + 1;
    for (size_t length = 0; length < startTicksEnd; ++length)
        EXPECT_EQ(parseProcessStat(whole.substr(0, length)), std::nullopt) << length;
    EXPECT_EQ(parseProcessStat(")("), std::nullopt);
    EXPECT_EQ(parseProcessStat("(sS 1 7 7 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 147653 0 0"), std::nullopt);
    EXPECT_EQ(parseProcessStat("7 (sh) SS 1 7 7 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 147653 0 0"), std::nullopt);
    EXPECT_EQ(parseProcessStat("7 (sh) S 1 7 7 0 -1 0 0 0 0 0 x 0 0 0 20 0 1 0 147653 0 0"), std::nullopt);
}

TEST(ResidentPages, AreTheSecondFigure)
{
    EXPECT_EQ(parseResidentPages("5102 5086 2927 1 0 1811 0\n"), 5086);
    EXPECT_EQ(parseResidentPages("0 0 0 0 0 0 0\n"), 0);
}

TEST(ResidentPages, AreAbsentForAnyOtherForm)
{
    EXPECT_EQ(parseResidentPages(""), std::nullopt);
    EXPECT_EQ(parseResidentPages("5102"), std::nullopt);
    EXPECT_EQ(parseResidentPages("5102 x 2927"), std::nullopt);
    EXPECT_EQ(parseResidentPages("5102 -1 2927"), std::nullopt);
}

} // namespace portolan
