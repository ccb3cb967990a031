#include "AbandonableWorker.h"
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

/// Work that hangs until it is released.
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

using Tasks = std::vector<AbandonableWorker::Task<int>>;
using Results = std::vector<std::optional<int>>;

/// Every thread must have ended once nothing hangs any more.
class AbandonableWorkerRun : public testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_TRUE(waitUntil([this] { return threads() == m_threads; }));
    }

    Results run(Tasks tasks, std::chrono::milliseconds deadline = 1h)
    {
        return m_worker.run(std::move(tasks), {deadline});
    }

    AbandonableWorker m_worker;
    const qsizetype m_threads = threads();
};

} // namespace

TEST_F(AbandonableWorkerRun, GivesTheResultsInOrder)
{
    Tasks tasks;
    Results expected;
    for (int i = 0; i < 1000; ++i) {
        tasks.push_back({QString::number(i % 10), answer(i)});
        expected.emplace_back(i);
    }
    EXPECT_EQ(run(tasks), expected);
    EXPECT_EQ(run({}), Results());
}

TEST_F(AbandonableWorkerRun, ARunHasOneThreadThatIsNotTheCallers)
{
    const std::function<std::thread::id()> ownId = [] { return std::this_thread::get_id(); };
    const auto ids = m_worker.run<std::thread::id>({{u"a"_s, ownId}, {u"b"_s, ownId}}, {1h});
    ASSERT_TRUE(ids[0]);
    EXPECT_NE(*ids[0], std::this_thread::get_id());
    EXPECT_EQ(ids[0], ids[1]);
    EXPECT_EQ(threads(), m_threads);
}

TEST_F(AbandonableWorkerRun, WhatHangsIsAbandonedAndTheRestIsDone)
{
    Hang hang;
    const Tasks tasks = {
        {u"a"_s, answer(1)}, {u"dead"_s, hang.work()}, {u"b"_s, answer(2)}, {u"dead"_s, answer(3)}};
    EXPECT_EQ(run(tasks, 200ms), (Results{1, std::nullopt, 2, std::nullopt}));
    EXPECT_EQ(run(tasks, 200ms), (Results{1, std::nullopt, 2, std::nullopt}));
    EXPECT_EQ(hang.started(), 1);
}

TEST_F(AbandonableWorkerRun, WhatStillHangsIsNotTriedAgain)
{
    Hang hang;
    for (int scan = 0; scan < 20; ++scan)
        EXPECT_EQ(run({{u"dead"_s, hang.work()}, {u"alive"_s, answer(scan)}}, 200ms),
                  (Results{std::nullopt, scan}));
    EXPECT_EQ(hang.started(), 1);
    EXPECT_TRUE(waitUntil([&] { return threads() == m_threads + 1; }));
}

TEST_F(AbandonableWorkerRun, WhatCameBackIsTriedAgain)
{
    Hang hang;
    EXPECT_EQ(run({{u"dead"_s, hang.work()}}, 50ms), Results{std::nullopt});
    hang.release();
    EXPECT_TRUE(waitUntil([this] { return run({{u"dead"_s, answer(5)}}) == Results{5}; }));
}

TEST_F(AbandonableWorkerRun, AfterTwoTimeOutsTheRestIsNotTried)
{
    Hang hang;
    EXPECT_EQ(run({{u"dead 1"_s, hang.work()},
                   {u"alive"_s, answer(1)},
                   {u"dead 2"_s, hang.work()},
                   {u"alive"_s, answer(2)}},
                  100ms),
              (Results{std::nullopt, 1, std::nullopt, std::nullopt}));
    EXPECT_EQ(hang.started(), 2);
}

TEST_F(AbandonableWorkerRun, WhatIsKnownToHangIsNoTimeOut)
{
    Hang hang;
    Tasks tasks;
    for (const QString &subject : {u"dead 1"_s, u"dead 2"_s, u"dead 3"_s}) {
        tasks.push_back({subject, hang.work()});
        EXPECT_EQ(run({tasks.back()}, 100ms), Results{std::nullopt});
    }
    tasks.push_back({u"alive"_s, answer(1)});
    EXPECT_EQ(run(tasks), (Results{std::nullopt, std::nullopt, std::nullopt, 1}));
}

TEST_F(AbandonableWorkerRun, EachTaskHasTheWholeDeadline)
{
    const std::function<int()> slow = [] {
        std::this_thread::sleep_for(300ms);
        return 1;
    };
    EXPECT_EQ(run(Tasks(10, {u"slow"_s, slow}), 2s), Results(10, 1));
}

TEST_F(AbandonableWorkerRun, AStopRequestEndsTheRun)
{
    Hang hang;
    std::stop_source stop;
    std::jthread stopper([&] {
        waitUntil([&] { return hang.started() == 1; });
        stop.request_stop();
    });
    const AbandonableWorker::Limits limits{1h, stop.get_token()};
    EXPECT_EQ(m_worker.run<int>({{u"dead"_s, hang.work()}, {u"alive"_s, answer(1)}}, limits),
              (Results{std::nullopt, std::nullopt}));
    EXPECT_EQ(m_worker.run<int>({{u"alive"_s, answer(1)}}, limits), Results{std::nullopt});
}

TEST_F(AbandonableWorkerRun, AHangingThreadMayOutliveTheWorker)
{
    Hang hang;
    {
        AbandonableWorker worker;
        EXPECT_EQ(worker.run<int>({{u"dead"_s, hang.work()}}, {50ms}), Results{std::nullopt});
    }
    EXPECT_EQ(threads(), m_threads + 1);
    hang.release();
}

TEST_F(AbandonableWorkerRun, AHangingThreadDoesNotKeepTheProgram)
{
    const auto exitDuringAHang = [] {
        auto *const hang = new Hang; // never released
        AbandonableWorker worker;
        const bool isAbandoned = !worker.run<int>({{u"dead"_s, hang->work()}}, {10ms}).front();
        std::exit(isAbandoned ? 0 : 1);
    };
    EXPECT_EXIT(exitDuringAHang(), testing::ExitedWithCode(0), "");
}

} // namespace portolan
