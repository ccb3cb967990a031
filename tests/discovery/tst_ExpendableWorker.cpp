#include "ExpendableWorker.h"
#include "Printers.h"
#include "ProcessFacts.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Work that hangs until it is let go.
class Hang
{
public:
    ~Hang() { release(); }

    std::function<int()> work()
    {
        return [gate = m_gate, started = m_started] {
            ++*started;
            gate.wait();
            return 1;
        };
    }
    void release()
    {
        if (!std::exchange(m_released, true))
            m_key.set_value();
    }
    int started() const { return *m_started; }

private:
    std::promise<void> m_key;
    std::shared_future<void> m_gate = m_key.get_future();
    std::shared_ptr<std::atomic<int>> m_started = std::make_shared<std::atomic<int>>(0);
    bool m_released = false;
};

std::function<int()> answer(int value)
{
    return [value] { return value; };
}

/// Every thread must have ended once nothing hangs any more.
class ExpendableWorkerRun : public testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_TRUE(waitUntil([this] { return threads() == m_threads; }));
    }

    const qsizetype m_threads = threads();
};

} // namespace

TEST_F(ExpendableWorkerRun, GivesTheResult)
{
    ExpendableWorker worker(1h);
    EXPECT_EQ(worker.run(u"a"_s, answer(1)), 1);
    EXPECT_EQ(worker.run(u"b"_s, answer(2)), 2);
    EXPECT_EQ(worker.run(u"a"_s, answer(3)), 3);
}

TEST_F(ExpendableWorkerRun, AllWorkGoesToOneThreadThatIsNotTheCallers)
{
    ExpendableWorker worker(1h);
    const std::function<std::thread::id()> whoAmI = [] { return std::this_thread::get_id(); };
    const auto first = worker.run(u"a"_s, whoAmI);
    ASSERT_TRUE(first);
    EXPECT_NE(*first, std::this_thread::get_id());
    EXPECT_EQ(worker.run(u"b"_s, whoAmI), first);
}

TEST_F(ExpendableWorkerRun, HasNoThreadBeforeThereIsWork)
{
    ExpendableWorker worker(1h);
    EXPECT_EQ(threads(), m_threads);
    EXPECT_EQ(worker.run(u"a"_s, answer(1)), 1);
    EXPECT_EQ(threads(), m_threads + 1);
}

TEST_F(ExpendableWorkerRun, WhatHangsIsGivenUpAndTheNextIsServed)
{
    Hang hang;
    ExpendableWorker worker(200ms);
    EXPECT_EQ(worker.run(u"dead"_s, hang.work()), std::nullopt);
    EXPECT_EQ(worker.run(u"alive"_s, answer(2)), 2);
}

TEST_F(ExpendableWorkerRun, WhatStillHangsIsNotTriedAgainByAnyWorker)
{
    Hang hang;
    for (int scan = 0; scan < 20; ++scan) {
        ExpendableWorker worker(200ms);
        EXPECT_EQ(worker.run(u"dead"_s, hang.work()), std::nullopt);
        EXPECT_EQ(worker.run(u"alive"_s, answer(scan)), scan);
    }
    EXPECT_EQ(hang.started(), 1);
    EXPECT_TRUE(waitUntil([&] { return threads() == m_threads + 1; }));
}

TEST_F(ExpendableWorkerRun, WhatCameBackIsTriedAgain)
{
    Hang hang;
    {
        ExpendableWorker worker(50ms);
        EXPECT_EQ(worker.run(u"dead"_s, hang.work()), std::nullopt);
    }
    hang.release();
    EXPECT_TRUE(waitUntil([] {
        ExpendableWorker worker(1h);
        return worker.run(u"dead"_s, answer(5)) == 5;
    }));
}

TEST_F(ExpendableWorkerRun, AfterTwoTimeOutsNothingMoreIsTried)
{
    Hang hang;
    ExpendableWorker worker(100ms);
    EXPECT_EQ(worker.run(u"dead 1"_s, hang.work()), std::nullopt);
    EXPECT_EQ(worker.run(u"alive"_s, answer(1)), 1);
    EXPECT_EQ(worker.run(u"dead 2"_s, hang.work()), std::nullopt);
    EXPECT_EQ(worker.run(u"alive"_s, answer(1)), std::nullopt);
    EXPECT_EQ(hang.started(), 2);
}

TEST_F(ExpendableWorkerRun, WhatIsKnownToHangIsNoTimeOut)
{
    Hang hang;
    for (const QString &about : {u"dead 1"_s, u"dead 2"_s, u"dead 3"_s}) {
        ExpendableWorker worker(100ms);
        EXPECT_EQ(worker.run(about, hang.work()), std::nullopt);
    }
    ExpendableWorker worker(1h);
    for (const QString &about : {u"dead 1"_s, u"dead 2"_s, u"dead 3"_s})
        EXPECT_EQ(worker.run(about, hang.work()), std::nullopt);
    EXPECT_EQ(worker.run(u"alive"_s, answer(1)), 1);
}

TEST_F(ExpendableWorkerRun, ManyTasksGiveTheirResultsInOrder)
{
    ExpendableWorker worker(1h);
    std::vector<ExpendableWorker::Task<int>> tasks;
    std::vector<std::optional<int>> expected;
    for (int i = 0; i < 1000; ++i) {
        tasks.push_back({QString::number(i % 10), answer(i)});
        expected.emplace_back(i);
    }
    EXPECT_EQ(worker.run(std::move(tasks)), expected);
    EXPECT_EQ(worker.run(std::vector<ExpendableWorker::Task<int>>()), std::vector<std::optional<int>>());
}

TEST_F(ExpendableWorkerRun, OnlyWhatHangsAmongManyIsLost)
{
    Hang hang;
    ExpendableWorker worker(200ms);
    std::vector<ExpendableWorker::Task<int>> tasks = {
        {u"a"_s, answer(1)}, {u"dead"_s, hang.work()}, {u"b"_s, answer(2)}, {u"dead"_s, answer(3)}};
    const std::optional<int> nothing;
    EXPECT_EQ(worker.run(tasks), (std::vector<std::optional<int>>{1, nothing, 2, nothing}));
    EXPECT_EQ(worker.run(tasks), (std::vector<std::optional<int>>{1, nothing, 2, nothing}));
    EXPECT_EQ(hang.started(), 1);
}

TEST_F(ExpendableWorkerRun, EachOfManyTasksHasTheWholeDeadline)
{
    ExpendableWorker worker(2s);
    const std::function<int()> slow = [] {
        std::this_thread::sleep_for(300ms);
        return 1;
    };
    const std::vector<ExpendableWorker::Task<int>> tasks(10, {u"slow"_s, slow});
    EXPECT_EQ(worker.run(tasks), std::vector<std::optional<int>>(10, 1));
}

TEST_F(ExpendableWorkerRun, AfterTwoTimeOutsTheRestOfManyIsNotTried)
{
    Hang hang;
    ExpendableWorker worker(100ms);
    const std::optional<int> nothing;
    EXPECT_EQ(worker.run<int>({{u"dead 1"_s, hang.work()},
                               {u"alive"_s, answer(1)},
                               {u"dead 2"_s, hang.work()},
                               {u"alive"_s, answer(2)}}),
              (std::vector<std::optional<int>>{nothing, 1, nothing, nothing}));
    EXPECT_EQ(hang.started(), 2);
}

TEST_F(ExpendableWorkerRun, AStopRequestEndsTheWait)
{
    Hang hang;
    std::stop_source stop;
    ExpendableWorker worker(1h, stop.get_token());
    std::jthread stopper([&] {
        waitUntil([&] { return hang.started() == 1; });
        stop.request_stop();
    });
    EXPECT_EQ(worker.run(u"dead"_s, hang.work()), std::nullopt);
    EXPECT_EQ(worker.run(u"alive"_s, answer(1)), std::nullopt);
}

TEST_F(ExpendableWorkerRun, AStuckThreadDoesNotKeepTheProgram)
{
    const auto exitDuringAHang = [] {
        auto *const hang = new Hang; // never let go
        ExpendableWorker worker(10ms);
        const bool gaveUp = !worker.run(u"dead"_s, hang->work());
        std::exit(gaveUp ? 0 : 1);
    };
    EXPECT_EXIT(exitDuringAHang(), testing::ExitedWithCode(0), "");
}

} // namespace portolan
