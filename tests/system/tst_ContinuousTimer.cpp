// SPDX-License-Identifier: MIT
#include "ContinuousTimer.h"
#include "Eventually.h"

#include <QByteArrayList>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <thread>

namespace portolan {

using namespace std::chrono_literals;

TEST(ContinuousTimer, FiresOnceAndNeverEarly)
{
    ContinuousTimer timer;
    int count = 0;
    QObject::connect(&timer, &ContinuousTimer::timeout, [&] { ++count; });
    QElapsedTimer elapsed;
    elapsed.start();
    timer.start(50ms);
    ASSERT_TRUE(eventually([&] { return count > 0; }));
    EXPECT_GE(elapsed.elapsed(), 50);
    std::this_thread::sleep_for(100ms);
    settle();
    EXPECT_EQ(count, 1);
}

TEST(ContinuousTimer, FiresWithoutAnInterval)
{
    ContinuousTimer timer;
    bool isOut = false;
    QObject::connect(&timer, &ContinuousTimer::timeout, [&] { isOut = true; });
    timer.start(0ms);
    EXPECT_TRUE(eventually([&] { return isOut; }));
}

TEST(ContinuousTimer, DoesNotFireOnceStoppedThoughItsTimeHadRunOut)
{
    ContinuousTimer timer;
    int count = 0;
    QObject::connect(&timer, &ContinuousTimer::timeout, [&] { ++count; });
    timer.start(1ms);
    std::this_thread::sleep_for(20ms);
    timer.stop();
    settle();
    EXPECT_EQ(count, 0);

    timer.start(1ms);
    std::this_thread::sleep_for(20ms);
    timer.start(1h);
    settle();
    EXPECT_EQ(count, 0);
}

// A machine cannot be suspended by a test, so it asks the kernel which clock the timer follows.
TEST(ContinuousTimer, FollowsTheClockThatCountsTheTimeSuspended)
{
    const auto clocks = [] {
        QByteArrayList found;
        for (const QString &name : QDir(QStringLiteral("/proc/self/fdinfo")).entryList(QDir::Files)) {
            QFile file(QStringLiteral("/proc/self/fdinfo/") + name);
            if (!file.open(QIODevice::ReadOnly))
                continue;
            for (const QByteArray &line : file.readAll().split('\n')) {
                if (line.startsWith("clockid:"))
                    found.append(line.mid(8).trimmed());
            }
        }
        return found;
    };
    ASSERT_EQ(clocks(), QByteArrayList());
    const ContinuousTimer timer;
    EXPECT_EQ(clocks(), QByteArrayList{QByteArray::number(CLOCK_BOOTTIME)});
}

} // namespace portolan
