// SPDX-License-Identifier: MIT
#include "EventLoopTicker.h"
#include "Printers.h"
#include "ProcessHandle.h"
#include "StoreFixture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <atomic>
#include <latch>
#include <thread>

#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The refresh cycle: scans, merges, probes, and the auto-refresh loop.
class RefreshCycle : public StoreFixture
{
protected:
    bool waitForProbes(size_t count)
    {
        return eventually([this, count] { return m_checker.ports().size() == count; });
    }
};

TEST_F(RefreshCycle, ScansOffTheMainThreadThenProbesEveryService)
{
    makeStore();
    m_store->refresh();
    EXPECT_TRUE(m_store->isScanning());
    EXPECT_TRUE(m_store->services().isEmpty());
    const QDateTime before = QDateTime::currentDateTimeUtc();
    finishScan({service(1, 10), service(2, 20), service(3, 20)});
    EXPECT_EQ(m_store->services(), QList({service(1, 10), service(2, 20), service(3, 20)}));
    EXPECT_GE(m_store->lastUpdated(), before);
    EXPECT_THAT(m_checker.ports(), testing::ElementsAre(10, 20, 20));
}

TEST_F(RefreshCycle, TheMainThreadIsNeverBlockedByAScan)
{
    makeStore();
    const EventLoopTicker ticker;
    m_store->refresh();
    // The event loop runs during the scan, however long that takes.
    ASSERT_TRUE(eventually([&] { return m_scanner.begun() == 1 && ticker.ticks() >= 50; }));
    EXPECT_TRUE(m_store->isScanning());
    finishScan({});
}

TEST_F(RefreshCycle, ARefreshDuringAScanIsDropped)
{
    makeStore();
    const QSignalSpy scanning(m_store.get(), &ServiceStore::isScanningChanged);
    bool secondReturned = false;
    m_store->refresh();
    m_store->refresh([&] { secondReturned = true; });
    EXPECT_TRUE(secondReturned);
    finishScan({service(1, 10)});
    settle();
    EXPECT_EQ(m_scanner.begun(), 1);
    EXPECT_EQ(scanning.count(), 2);
    EXPECT_EQ(m_checker.ports().size(), 1);
}

TEST_F(RefreshCycle, AThousandRefreshesAreOneScan)
{
    makeStore();
    for (int i = 0; i < 1000; ++i)
        m_store->refresh();
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() > 0; }));
    for (int i = 0; i < 1000; ++i)
        m_store->start();
    finishScan({});
    settle();
    EXPECT_EQ(m_scanner.begun(), 1);
    EXPECT_FALSE(m_store->isScanning());
}

TEST_F(RefreshCycle, ARefreshIsDoneWithTheLastProbe)
{
    makeStore();
    bool done = false;
    m_store->refresh([&] { done = true; });
    finishScan({service(1, 10), service(2, 20)});
    m_checker.answer(1, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 1; }));
    settle();
    EXPECT_FALSE(done);
    m_checker.answer(0, Health::unreachable());
    EXPECT_TRUE(eventually([&] { return done; }));
}

TEST_F(RefreshCycle, AnEmptyScanEmptiesTheListAndProbesNothing)
{
    makeStore();
    scan({service(1, 10)});
    EXPECT_EQ(m_store->serviceCount(), 1);
    bool done = false;
    m_store->refresh([&] { done = true; });
    finishScan({});
    EXPECT_TRUE(m_store->services().isEmpty());
    EXPECT_EQ(m_store->serviceCount(), 0);
    EXPECT_TRUE(done);
    EXPECT_EQ(m_checker.ports().size(), 1);
}

TEST_F(RefreshCycle, EveryScanIsATimeOfUpdateEvenIfNothingChanged)
{
    makeStore();
    scan({service(1, 10)});
    const QDateTime first = m_store->lastUpdated();
    const QSignalSpy services(m_store.get(), &ServiceStore::servicesChanged);
    const QSignalSpy lastUpdated(m_store.get(), &ServiceStore::lastUpdatedChanged);
    ASSERT_TRUE(eventually([&] { return QDateTime::currentDateTimeUtc() > first; }));
    scan({service(1, 10)});
    EXPECT_GT(m_store->lastUpdated(), first);
    EXPECT_EQ(lastUpdated.count(), 1);
    EXPECT_EQ(services.count(), 0);
}

TEST_F(RefreshCycle, AMergeIsOneAnnouncementOfTheWholeList)
{
    makeStore();
    const QSignalSpy services(m_store.get(), &ServiceStore::servicesChanged);
    scan({service(1, 10), service(2, 20), service(3, 30)});
    EXPECT_EQ(services.count(), 1);
}

TEST_F(RefreshCycle, TheStoreKnowsTheProcessesThatTheLastScanSaw)
{
    makeStore();
    m_store->refresh();
    m_scanner.finish({service(1, 10), service(1, 11), service(2, 20)}, {{1, {1, 111}}, {2, {2, 222}}});
    ASSERT_TRUE(eventually([this] { return !m_store->isScanning(); }));
    EXPECT_EQ(m_store->identityOf(service(1, 11)), (ProcessIdentity{1, 111}));
    EXPECT_EQ(m_store->identityOf(service(2, 20)), (ProcessIdentity{2, 222}));
    m_store->refresh();
    m_scanner.finish({service(1, 10)}, {{1, {1, 333}}});
    ASSERT_TRUE(eventually([this] { return !m_store->isScanning(); }));
    EXPECT_EQ(m_store->identityOf(service(1, 10)), (ProcessIdentity{1, 333}));
}

TEST_F(RefreshCycle, TheProcessOfAServiceThatIsNotListedIsNone)
{
    makeStore();
    const Service self = service(qint32(getpid()), 10);
    m_store->refresh();
    m_scanner.finish({self}, {});
    ASSERT_TRUE(eventually([this] { return !m_store->isScanning(); }));
    EXPECT_EQ(m_store->identityOf(self), std::nullopt) << "listed, but the system does not tell";
    m_store->refresh();
    m_scanner.finish({}, {});
    ASSERT_TRUE(eventually([this] { return !m_store->isScanning(); }));
    EXPECT_FALSE(ProcessHandle(m_store->identityOf(self).value_or(*ProcessIdentity::of(getpid()))).send(0));
}

TEST_F(RefreshCycle, AKnownServiceKeepsItsHealthAndANewOneIsUnknown)
{
    makeStore();
    scan({service(1, 10), service(2, 20), service(3, 30)});
    m_checker.answer(0, Health::healthy(200, 12));
    m_checker.answer(1, Health::unreachable());
    m_checker.answer(2, Health::healthy(404, 3));
    ASSERT_TRUE(eventually([this] { return healthAt(2).isHealthy(); }));
    // The server on port 30 was restarted, and a health in the scan's result is ignored.
    scan({service(2, 20, Health::healthy(1, 1)), service(1, 10), service(4, 30, Health::checking())});
    EXPECT_EQ(healthAt(0), Health::unreachable());
    EXPECT_EQ(healthAt(1), Health::healthy(200, 12));
    EXPECT_EQ(healthAt(2), Health::unknown());
}

TEST_F(RefreshCycle, OfTwoRecordsWithOneKeyTheLatersHealthIsKept)
{
    makeStore();
    scan({service(1, 10), service(1, 10)});
    // Results go to the first record, so only that one is known to be healthy.
    m_checker.answer(1, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 1; }));
    EXPECT_EQ(healthAt(0), Health::healthy(200, 1));
    EXPECT_EQ(healthAt(1), Health::unknown());
    scan({service(1, 10)});
    EXPECT_EQ(healthAt(0), Health::unknown());
}

TEST_F(RefreshCycle, ResultsAreAppliedOneAtATimeInTheOrderOfCompletion)
{
    makeStore();
    scan({service(1, 10), service(2, 20), service(3, 30)});
    QList<QList<Health::State>> seen;
    QObject::connect(m_store.get(), &ServiceStore::servicesChanged, m_store.get(), [&] {
        seen.append(QList<Health::State>());
        for (const Service &known : m_store->services())
            seen.last().append(known.health.state());
    });
    m_checker.answer(2, Health::healthy(200, 1));
    m_checker.answer(0, Health::unreachable());
    m_checker.answer(1, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([&] { return seen.size() == 3; }));
    using enum Health::State;
    const QList<QList<Health::State>> expected{
        {unknown, unknown, healthy}, {unreachable, unknown, healthy}, {unreachable, healthy, healthy}};
    EXPECT_EQ(seen, expected);
}

TEST_F(RefreshCycle, ResultsThatArriveTogetherAreOneEvent)
{
    class EventCounter : public QObject
    {
    public:
        int count = 0;
        bool eventFilter(QObject *, QEvent *) override
        {
            ++count;
            return false;
        }
    };

    makeStore();
    scan({service(1, 10), service(2, 20), service(3, 30)});
    EventCounter events;
    m_store->installEventFilter(&events);
    std::jthread([this] {
        for (size_t probe = 0; probe < 3; ++probe)
            m_checker.answer(probe, Health::healthy(200, 1));
    }).join();
    EXPECT_EQ(m_store->runningCount(), 0);
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 3; }));
    EXPECT_EQ(events.count, 1);
}

TEST_F(RefreshCycle, AResultEqualToTheKnownHealthIsAnnouncedAllTheSame)
{
    makeStore();
    scan({service(1, 10)});
    const QSignalSpy services(m_store.get(), &ServiceStore::servicesChanged);
    m_checker.answer(0, Health::unknown());
    EXPECT_TRUE(eventually([&] { return services.count() == 1; }));
}

TEST_F(RefreshCycle, ServicesOnOnePortAreProbedAndAnsweredSeparately)
{
    makeStore();
    scan({service(1, 10), service(2, 10)});
    m_checker.answer(1, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 1; }));
    EXPECT_EQ(healthAt(0), Health::unknown());
    EXPECT_EQ(healthAt(1), Health::healthy(200, 1));
}

TEST_F(RefreshCycle, OfOverlappingPassesTheLastAnswerWins)
{
    makeStore();
    scan({service(1, 10)});
    scan({service(1, 10)});
    ASSERT_EQ(m_checker.ports().size(), 2);
    m_checker.answer(1, Health::healthy(200, 2));
    ASSERT_TRUE(eventually([this] { return healthAt(0) == Health::healthy(200, 2); }));
    m_checker.answer(0, Health::unreachable());
    EXPECT_TRUE(eventually([this] { return healthAt(0) == Health::unreachable(); }));
}

TEST_F(RefreshCycle, AResultForAServiceThatIsGoneChangesNothing)
{
    makeStore();
    bool done = false;
    m_store->refresh([&] { done = true; });
    finishScan({service(1, 10), service(2, 20)});
    m_store->removeService(service(1, 10));
    const QList<Service> left = m_store->services();
    const QSignalSpy services(m_store.get(), &ServiceStore::servicesChanged);
    m_checker.answer(0, Health::healthy(200, 1));
    m_checker.answer(1, Health::unknown());
    ASSERT_TRUE(eventually([&] { return done; }));
    EXPECT_EQ(m_store->services(), left);
    EXPECT_EQ(services.count(), 1);
}

TEST_F(RefreshCycle, ARestartedServerIsNotGivenItsPredecessorsAnswer)
{
    makeStore();
    scan({service(1, 10)});
    scan({service(2, 10)});
    m_checker.answer(0, Health::healthy(200, 1));
    settle();
    EXPECT_EQ(healthAt(0), Health::unknown());
}

TEST_F(RefreshCycle, AnAnswerThatIsThereAtOnceIsTaken)
{
    UserDefaults defaults(settingsPath());
    ServiceStore store(defaults, m_scanner.function(),
                       [](qint64 port) { return QtFuture::makeReadyFuture(Health::healthy(200, port)); });
    store.refresh();
    m_scanner.finish({service(1, 10), service(2, 20)});
    ASSERT_TRUE(eventually([&] { return store.runningCount() == 2; }));
    EXPECT_EQ(store.services().at(1).health, Health::healthy(200, 20));
}

TEST_F(RefreshCycle, ARefreshAskedForByAnObserverOfTheEndOfTheScanRuns)
{
    makeStore();
    int idle = 0;
    QObject::connect(m_store.get(), &ServiceStore::isScanningChanged, m_store.get(), [&] {
        if (!m_store->isScanning() && ++idle == 1)
            m_store->refresh();
    });
    m_store->refresh();
    m_scanner.finish({service(1, 10)});
    ASSERT_TRUE(eventually([&] { return idle == 1 && m_store->isScanning(); }));
    m_scanner.finish({service(1, 10)});
    ASSERT_TRUE(eventually([&] { return idle == 2; }));
    EXPECT_EQ(m_scanner.begun(), 2);
    EXPECT_EQ(m_checker.ports().size(), 2);
}

TEST_F(RefreshCycle, AServiceThatIsToEndGoesAtOnceAndIsScannedForLater)
{
    makeStore();
    scan({service(1, 10), service(2, 20)});
    QElapsedTimer timer;
    timer.start();
    m_store->expectEnd(service(1, 10));
    EXPECT_EQ(m_store->services(), QList{service(2, 20)});
    EXPECT_FALSE(m_store->isScanning());
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 2; }));
    EXPECT_GE(timer.elapsed(), 1400);
    finishScan({service(1, 10), service(2, 20)});
    EXPECT_EQ(m_store->serviceCount(), 2);
}

// Auto-refresh. Times are only ever compared with the shortest wait that can be right.

TEST_F(RefreshCycle, StartRefreshesAtOnceAndThenAgainAfterTheInterval)
{
    makeStore(50ms);
    QElapsedTimer timer;
    timer.start();
    m_store->start();
    EXPECT_TRUE(m_store->isScanning());
    finishScan({});
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 2; }));
    EXPECT_GE(timer.elapsed(), 49);
}

TEST_F(RefreshCycle, StartWithAutoRefreshOffRefreshesOnce)
{
    makeStore(1ms);
    m_store->setAutoRefresh(false);
    m_store->start();
    finishScan({});
    QTest::qWait(50);
    EXPECT_EQ(m_scanner.begun(), 1);
}

TEST_F(RefreshCycle, TheNextWaitBeginsWithTheLastProbe)
{
    makeStore(30ms);
    m_store->setAutoRefresh(true);
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 1; }));
    finishScan({service(1, 10)});
    QTest::qWait(100);
    EXPECT_EQ(m_scanner.begun(), 1);
    QElapsedTimer timer;
    timer.start();
    m_checker.answer(0, Health::unreachable());
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 2; }));
    EXPECT_GE(timer.elapsed(), 29);
}

TEST_F(RefreshCycle, SwitchingOffDuringTheWaitEndsTheLoop)
{
    makeStore(40ms);
    m_store->setAutoRefresh(true);
    m_store->setAutoRefresh(false);
    QTest::qWait(120);
    EXPECT_EQ(m_scanner.begun(), 0);
}

TEST_F(RefreshCycle, SwitchingOffDuringARefreshEndsTheLoopAfterIt)
{
    makeStore(10ms);
    m_store->setAutoRefresh(true);
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 1; }));
    m_store->setAutoRefresh(false);
    finishScan({service(1, 10)});
    EXPECT_TRUE(waitForProbes(1));
    m_checker.answer(0, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 1; }));
    QTest::qWait(50);
    EXPECT_EQ(m_scanner.begun(), 1);
}

TEST_F(RefreshCycle, SwitchingOnAgainBeginsANewWait)
{
    makeStore(500ms);
    m_store->setAutoRefresh(true);
    QTest::qWait(100);
    m_store->setAutoRefresh(false);
    QElapsedTimer timer;
    timer.start();
    m_store->setAutoRefresh(true);
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 1; }));
    EXPECT_GE(timer.elapsed(), 499);
}

TEST_F(RefreshCycle, ManyStartsLeaveOneLoop)
{
    makeStore(500ms);
    for (int i = 0; i < 3; ++i) {
        m_store->start();
        QTest::qWait(20);
    }
    finishScan({});
    EXPECT_EQ(m_scanner.begun(), 1);
    // The loop's own refresh is held for longer than a wait. Had another loop gone on, it would be in the
    // middle of a wait when this one's begins.
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 2; }));
    QTest::qWait(750);
    QElapsedTimer timer;
    timer.start();
    finishScan({});
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 3; }));
    EXPECT_GE(timer.elapsed(), 499);
}

// The end of the store, at every step of a refresh.

namespace {

enum class Moment {
    scanBegun,
    scanDelivered,
    probing,
    answerDelivered,
    oneAnswerApplied,
    passesOverlap,
    loopSleeps,
    loopScans,
    loopProbes,
    stoppedLoopScans
};

struct End
{
    const char *name;
    Moment moment;
};

} // namespace

class RefreshCycleEnd : public RefreshCycle, public testing::WithParamInterface<End>
{
protected:
    void bringStoreTo(Moment moment)
    {
        const bool isLoop = moment >= Moment::loopSleeps;
        makeStore(isLoop && moment != Moment::loopSleeps ? 1ms : 1h);
        if (isLoop) {
            m_store->setAutoRefresh(true);
            if (moment == Moment::loopSleeps)
                return;
        } else {
            m_store->refresh([this] { m_isDone = true; });
        }
        ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 1; }));
        if (moment == Moment::stoppedLoopScans)
            m_store->setAutoRefresh(false);
        if (moment == Moment::scanBegun || moment == Moment::loopScans || moment == Moment::stoppedLoopScans)
            return;
        if (moment == Moment::scanDelivered) {
            m_scanner.finish({service(1, 10)});
            std::this_thread::sleep_for(20ms);
            return;
        }
        finishScan({service(1, 10), service(2, 20)});
        if (moment == Moment::passesOverlap)
            scan({service(2, 20), service(3, 30)});
        if (moment == Moment::answerDelivered || moment == Moment::oneAnswerApplied)
            m_checker.answer(1, Health::healthy(200, 1));
        ASSERT_TRUE(
            eventually([&] { return moment != Moment::oneAnswerApplied || m_store->runningCount() == 1; }));
    }

    bool m_isDone = false;
};

TEST_P(RefreshCycleEnd, LeavesNothingBehind)
{
    bringStoreTo(GetParam().moment);
    m_store.reset();
    // Results that come too late are ignored.
    m_scanner.finish({service(9, 90)});
    m_checker.answerRest(Health::healthy(200, 1));
    settle();
    EXPECT_FALSE(m_isDone);
}

INSTANTIATE_TEST_SUITE_P(
    Moments, RefreshCycleEnd,
    testing::Values(End{"scanBegun", Moment::scanBegun}, End{"scanDelivered", Moment::scanDelivered},
                    End{"probing", Moment::probing}, End{"answerDelivered", Moment::answerDelivered},
                    End{"oneAnswerApplied", Moment::oneAnswerApplied},
                    End{"passesOverlap", Moment::passesOverlap}, End{"loopSleeps", Moment::loopSleeps},
                    End{"loopScans", Moment::loopScans}, End{"loopProbes", Moment::loopProbes},
                    End{"stoppedLoopScans", Moment::stoppedLoopScans}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(RefreshCycle, TheEndAsksARunningScanToStop)
{
    makeStore();
    m_store->refresh();
    ASSERT_TRUE(eventually([this] { return m_scanner.begun() == 1; }));
    m_store.reset();
    EXPECT_EQ(m_scanner.stopped(), 1);
}

TEST_F(RefreshCycle, ProbesAnsweredByOtherThreadsAreAllApplied)
{
    constexpr int count = 60;
    constexpr int rounds = 10;
    std::vector<std::jthread> threads;
    const auto check = [&threads](qint64 port) {
        auto promise = std::make_shared<QPromise<Health>>();
        promise->start();
        const QFuture<Health> future = promise->future();
        threads.emplace_back([promise = std::move(promise), port]() mutable {
            std::this_thread::sleep_for(std::chrono::microseconds(port * 37 % 900));
            promise->addResult(Health::healthy(200, port));
            promise->finish();
        });
        return future;
    };
    QList<Service> services;
    for (int i = 1; i <= count; ++i)
        services.append(service(i, i));
    UserDefaults defaults(settingsPath());
    ServiceStore store(
        defaults,
        [services](std::stop_token) {
            return ScanResult{services, {}};
        },
        check);
    for (int round = 0; round < rounds; ++round) {
        bool done = false;
        store.refresh([&] { done = true; });
        ASSERT_TRUE(eventually([&] { return done; }));
        EXPECT_EQ(store.runningCount(), count);
        threads.clear();
    }
}

// After any number of changes of the list: before the scan has found it, and after each of the probes that
// are answered, by threads that answer on while the store ends. Every other probe is answered only after
// that.
TEST_F(RefreshCycle, MayEndAtAnyMomentWhileOtherThreadsAnswer)
{
    constexpr int servers = 10;
    constexpr int rounds = 6;
    for (int round = 0; round < rounds * (servers / 2 + 2); ++round) {
        std::latch end(1);
        std::atomic<int> scansUnderWay = 0;
        std::vector<std::jthread> threads;
        const auto check = [&](qint64 port) {
            auto promise = std::make_shared<QPromise<Health>>();
            promise->start();
            const QFuture<Health> future = promise->future();
            threads.emplace_back([&end, port, promise] {
                if (port % 2 == 0)
                    end.wait();
                else
                    std::this_thread::sleep_for(std::chrono::microseconds(port * 100));
                promise->addResult(Health::healthy(200, port));
                promise->finish();
            });
            return future;
        };
        const auto scan = [&scansUnderWay](std::stop_token) {
            ++scansUnderWay;
            QList<Service> services;
            for (int i = 1; i <= servers; ++i)
                services.append(service(i, i));
            --scansUnderWay;
            return ScanResult{services, {}};
        };
        UserDefaults defaults(settingsPath());
        auto store = std::make_unique<ServiceStore>(defaults, scan, check, 1ms);
        int changes = 0;
        QObject::connect(store.get(), &ServiceStore::visibleChanged, [&changes] { ++changes; });
        store->start();
        const int awaited = round / rounds;
        EXPECT_TRUE(eventually([&] { return changes >= awaited; }));
        const size_t probes = threads.size();
        EXPECT_GE(probes, size_t(awaited > 0 ? servers : 0));
        store.reset();
        EXPECT_EQ(scansUnderWay, 0);
        end.count_down();
        EXPECT_EQ(threads.size(), probes) << "no probe is asked for by what has ended";
        threads.clear();
    }
}

} // namespace portolan
