#include "Ps.h"
#include "Ps_p.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stop_token>
#include <thread>

#include <climits>
#include <unistd.h>

namespace portolan {

struct PsRow
{
    const char *name;
    Ps::Figures figures;
    const char *line;
};

class PsLine : public testing::TestWithParam<PsRow>
{};

TEST_P(PsLine, IsPrintedAsByPs)
{
    EXPECT_EQ(Ps::line(GetParam().figures), GetParam().line);
}

// The lines were printed by procps 4.0.2, from a replaced /proc/uptime and /proc/PID/stat.
INSTANTIATE_TEST_SUITE_P(
    Rows, PsLine,
    testing::Values(
        PsRow{"justStarted", {0, 500, 500, 0}, "      00:00  0.0     0\n"},
        PsRow{"seconds", {500, 26, 1000, 20344}, "      00:09 51.3 20344\n"},
        PsRow{"minutes", {500, 26, 123456, 20344}, "      20:34  0.4 20344\n"},
        PsRow{"hours", {0, 0, 360000, 7}, "   01:00:00  0.0     7\n"},
        PsRow{"days", {500, 26, 400000010, 20344}, "46-07:06:39  0.0 20344\n"},
        PsRow{"wideTimeTakesFromTheNextColumn", {500, 26, 4000000099, 20344}, "462-23:06:40 0.0 20344\n"},
        PsRow{"wideTimeMovesAllColumns", {500, 26, 40000000000, 20344}, "4629-15:06:39 0.0 20344\n"},
        PsRow{"wideTimeTakesFromTheLastColumn", {0, 0, 40000000000, 3148}, "4629-15:06:40 0.0 3148\n"},
        PsRow{"allOfOneProcessor", {1000, 0, 1000, 1024}, "      00:10  100  1024\n"},
        PsRow{"almostOneProcessor", {999, 0, 1000, 1024}, "      00:10 99.9  1024\n"},
        PsRow{"sixtyFourProcessors", {64000, 0, 1000, 1024}, "      00:10 6400  1024\n"},
        PsRow{"lostTick", {107, 78991110825, 78991111032, 7}, "      00:02 51.9     7\n"},
        PsRow{"wideMemory", {0, 0, 1000, 1234567}, "      00:10  0.0 1234567\n"},
        PsRow{"startedAfterNow", {10, 1001, 1000, 5}, "      00:00  0.0     5\n"}),
    [](const auto &row) { return row.param.name; });

TEST(Ps, TicksAreCutNotRounded)
{
    EXPECT_EQ(Ps::ticksSinceBoot(435, 100), 434); // 4.35 * 100 in binary fractions
    EXPECT_EQ(Ps::ticksSinceBoot(123456, 100), 123456);
    EXPECT_EQ(Ps::ticksSinceBoot(0, 100), 0);
    EXPECT_EQ(Ps::ticksSinceBoot(100, 250), 250);
}

TEST(Ps, KnowsThisProcess)
{
    EXPECT_EQ(Ps::stats(getpid()).size(), 23U);
}

TEST(Ps, PrintsNothingForWhatIsNotThere)
{
    EXPECT_EQ(Ps::stats(INT_MAX), "");
}

TEST(Ps, PrintsNothingForAThreadOfAProcess)
{
    std::atomic<pid_t> thread = 0;
    std::jthread sleeper([&thread](const std::stop_token &stop) {
        thread = gettid();
        while (!stop.stop_requested())
            std::this_thread::yield();
    });
    while (thread == 0)
        std::this_thread::yield();
    EXPECT_EQ(Ps::stats(thread), "");
    EXPECT_NE(Ps::stats(getpid()), "");
}

} // namespace portolan
