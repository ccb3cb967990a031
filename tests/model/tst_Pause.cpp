#include "Eventually.h"
#include "Pause.h"

#include <QCoroTask>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <vector>

namespace portolan {

using namespace std::chrono_literals;

namespace {

QCoro::Task<> sleepTimes(Waits &waits, std::chrono::milliseconds length, std::stop_token stop, int times,
                         std::vector<bool> &results)
{
    Pause pause(waits, length, stop);
    for (int i = 0; i < times; ++i)
        results.push_back(co_await pause.over());
}

} // namespace

TEST(Pause, IsOverWhenItsTimeHasPassed)
{
    Waits waits;
    std::vector<bool> results;
    QElapsedTimer timer;
    timer.start();
    sleepTimes(waits, 30ms, {}, 2, results);
    EXPECT_TRUE(results.empty());
    ASSERT_TRUE(eventually([&] { return results.size() == 2; }));
    EXPECT_EQ(results, std::vector({true, true}));
    EXPECT_GE(timer.elapsed(), 58);
}

TEST(Pause, AStopRequestEndsItAtOnce)
{
    Waits waits;
    std::vector<bool> results;
    std::stop_source stop;
    sleepTimes(waits, 1h, stop.get_token(), 2, results);
    EXPECT_TRUE(results.empty());
    stop.request_stop();
    EXPECT_EQ(results, std::vector({false, false}));
}

TEST(Pause, DoesNotBeginOnceStopped)
{
    Waits waits;
    std::vector<bool> results;
    std::stop_source stop;
    stop.request_stop();
    sleepTimes(waits, 1h, stop.get_token(), 1, results);
    EXPECT_EQ(results, std::vector({false}));
}

TEST(Pause, AStopAfterItsEndIsTooLate)
{
    Waits waits;
    std::vector<bool> results;
    std::stop_source stop;
    sleepTimes(waits, 1ms, stop.get_token(), 1, results);
    ASSERT_TRUE(eventually([&] { return !results.empty(); }));
    stop.request_stop();
    EXPECT_EQ(results, std::vector({true}));
}

TEST(Pause, EndsWithItsWaits)
{
    std::vector<bool> results;
    {
        Waits waits;
        sleepTimes(waits, 1h, {}, 2, results);
    }
    EXPECT_EQ(results, std::vector({false, false}));
}

} // namespace portolan
