// SPDX-License-Identifier: MIT
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

Outcome stop(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities = {})
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const bool haveEnded = StopReport::stopAll(services, identities);
    return {haveEnded, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

Service serverOf(pid_t pid)
{
    Service service = SampleServices::shop();
    service.pid = pid;
    return service;
}

QHash<qint32, ProcessIdentity> identitiesOf(const QList<Service> &services)
{
    QHash<qint32, ProcessIdentity> identities;
    for (const Service &service : services)
        identities.insert(service.pid, ProcessIdentity::of(service.pid).value());
    return identities;
}

std::string described(const Service &service)
{
    return "Shop (process " + std::to_string(service.pid) + ", port 3000)";
}

} // namespace

TEST(StopReport, StopsTheServers)
{
    TestChild child(TestChild::endsOnTerm);
    const Service server = serverOf(child.pid());
    const Outcome outcome = stop({server}, identitiesOf({server}));
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

    const Outcome outcome = stop({one, other});
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_EQ(outcome.output,
              described(one) + " had ended already.\n" + described(other) + " had ended already.\n");
    EXPECT_EQ(outcome.error, "");
}

TEST(StopReport, NeverReachesAServerThatGotTheIdSinceTheScan)
{
    TestChild child(TestChild::endsOnTerm);
    const Service server = serverOf(child.pid());
    const auto identities = identitiesOf({server});
    kill(server.pid, SIGTERM);
    child.collect();
    const auto newcomer = TestChild::withPidLater(server.pid, TestChild::endsOnTerm);
    if (!newcomer)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    const Outcome outcome = stop({server}, identities);
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_EQ(outcome.output, described(server) + " had ended already.\n");
    EXPECT_TRUE(newcomer->isAlive());
}

TEST(StopReport, StopsNothingWithoutServers)
{
    const Outcome outcome = stop({});
    EXPECT_TRUE(outcome.haveEnded);
    EXPECT_EQ(outcome.output + outcome.error, "");
}

} // namespace portolan
