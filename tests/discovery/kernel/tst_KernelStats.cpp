// SPDX-License-Identifier: MIT
#include "KernelStats.h"

#include <gtest/gtest.h>

namespace portolan {

struct StatsRow
{
    const char *name;
    KernelStats::Figures figures;
    ProcessStats stats;
};

class KernelStatsOf : public testing::TestWithParam<StatsRow>
{};

TEST_P(KernelStatsOf, AreThoseOfPs)
{
    EXPECT_EQ(KernelStats::of(GetParam().figures), GetParam().stats);
}

// What procps 4.0.2 printed, from a replaced /proc/uptime and /proc/PID/stat.
INSTANTIATE_TEST_SUITE_P(
    Rows, KernelStatsOf,
    testing::Values(StatsRow{"justStarted", {0, 500, 500, 0}, {0, 0, 0}},
                    StatsRow{"seconds", {500, 26, 1000, 20480}, {9, 51.3, 20}},
                    StatsRow{"minutes", {500, 26, 123456, 20480}, {20 * 60 + 34, 0.4, 20}},
                    StatsRow{"hours", {0, 0, 360000, 512}, {3600, 0, 0.5}},
                    StatsRow{"days", {500, 26, 400000010, 0}, {46 * 86400 + 7 * 3600 + 6 * 60 + 39, 0, 0}},
                    StatsRow{"years", {0, 0, 40000000000, 0}, {400000000, 0, 0}},
                    StatsRow{"allOfOneProcessor", {1000, 0, 1000, 1024}, {10, 100, 1}},
                    StatsRow{"almostOneProcessor", {999, 0, 1000, 1024}, {10, 99.9, 1}},
                    StatsRow{"withoutDecimals", {1239, 0, 1000, 1024}, {10, 123, 1}},
                    StatsRow{"sixtyFourProcessors", {64000, 0, 1000, 1024}, {10, 6400, 1}},
                    StatsRow{"lostTick", {107, 78991110825, 78991111032, 0}, {2, 51.9, 0}},
                    StatsRow{"startedAfterNow", {10, 1001, 1000, 1024}, {0, 0, 1}}),
    [](const auto &row) { return row.param.name; });

TEST(KernelStats, TicksAreCutNotRounded)
{
    EXPECT_EQ(KernelStats::ticksSinceBoot(435, 100), 434); // 4.35 * 100 in binary fractions
    EXPECT_EQ(KernelStats::ticksSinceBoot(123456, 100), 123456);
    EXPECT_EQ(KernelStats::ticksSinceBoot(0, 100), 0);
    EXPECT_EQ(KernelStats::ticksSinceBoot(100, 250), 250);
}

} // namespace portolan
