#include "Printers.h"
#include "SampleServices.h"
#include "StopReport.h"
#include "TestChild.h"

#include <gmock/gmock.h>

#include <cstring>

namespace portolan {

using testing::MatchesRegex;

namespace {

struct Outcome
{
    bool haveEnded = false;
    std::string output;
    std::string error;
};

/// Stops `services`, of which `listed` are those that a second scan lists.
Outcome stop(const QList<Service> &services, const std::function<QList<Service>()> &listed,
             const QHash<qint32, ProcessIdentity> &identities = {})
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const bool haveEnded = StopReport::stopAll(services, identities, listed);
    return {haveEnded, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

Service serverOf(pid_t pid)
{
    Service service = SampleServices::shop();
    service.pid = pid;
    return service;
}

std::string described(const Service &service)
{
    return "Shop (process " + std::to_string(service.pid) + ", port 3000)";
}

} // namespace

TEST(StopReport, StopsWhatIsStillListed)
{
    TestChild child(TestChild::endsOnTerm);
    const Service server = serverOf(child.pid());
    const Outcome outcome = stop({server}, [&] { return QList{server}; });
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_THAT(outcome.output, MatchesRegex("Stopping .*\nStopped .* after [0-9]+\\.[0-9] s\\.\n"));
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(child.collect(), SIGTERM);
}

TEST(StopReport, ReportsWhatHadEndedBefore)
{
    TestChild collected(TestChild::endsOnTerm);
    const Service one = serverOf(collected.pid());
    kill(one.pid, SIGTERM);
    collected.collect();
    TestChild uncollected(TestChild::endsOnTerm);
    const Service other = serverOf(uncollected.pid());
    kill(other.pid, SIGTERM);
    siginfo_t ended = {};
    ASSERT_EQ(waitid(P_PID, id_t(other.pid), &ended, WEXITED | WNOWAIT), 0);

    const Outcome outcome = stop({one, other}, [] { return QList<Service>(); });
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_EQ(outcome.output,
              described(one) + " had ended already.\n" + described(other) + " had ended already.\n");
    EXPECT_EQ(outcome.error, "");
}

TEST(StopReport, DoesNotStopWhatNoLongerListens)
{
    TestChild child(TestChild::endsOnTerm);
    const Service server = serverOf(child.pid());
    const Outcome outcome = stop({server}, [] { return QList<Service>(); });
    EXPECT_FALSE(outcome.haveEnded);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.error,
              "portolanctl: " + described(server) + " no longer listens there and is not stopped\n");
    EXPECT_TRUE(child.isAlive());
}

TEST(StopReport, NeverReachesAServerThatGotTheIdOfTheOneThatWasListed)
{
    TestChild child(TestChild::endsOnTerm);
    const Service server = serverOf(child.pid());
    std::optional<TestChild> newcomer;
    const Outcome outcome = stop({server}, [&] {
        kill(server.pid, SIGTERM);
        child.collect();
        if (auto successor = TestChild::withPid(server.pid, TestChild::endsOnTerm))
            newcomer.emplace(std::move(*successor));
        return QList{server};
    });
    if (!newcomer)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_EQ(outcome.output, described(server) + " had ended already.\n");
    EXPECT_TRUE(newcomer->isAlive());
}

TEST(StopReport, NeverReachesAServerThatGotTheIdSinceTheScan)
{
    TestChild child(TestChild::endsOnTerm);
    const Service server = serverOf(child.pid());
    const auto identity = ProcessIdentity::of(child.pid());
    ASSERT_TRUE(identity);
    kill(server.pid, SIGTERM);
    child.collect();
    const auto newcomer = TestChild::withPidLater(server.pid, TestChild::endsOnTerm);
    if (!newcomer)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    const Outcome outcome = stop({server}, [&] { return QList{server}; }, {{server.pid, *identity}});
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_EQ(outcome.output, described(server) + " had ended already.\n");
    EXPECT_TRUE(newcomer->isAlive());
}

TEST(StopReport, DoesNotScanAgainForNothing)
{
    bool hasScanned = false;
    const Outcome outcome = stop({}, [&] {
        hasScanned = true;
        return QList<Service>();
    });
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_FALSE(hasScanned);
}

} // namespace portolan
