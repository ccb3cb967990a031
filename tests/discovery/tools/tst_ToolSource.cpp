// SPDX-License-Identifier: MIT
// Only what is specific to the tool source; the tests of the scan have the rest.
#include "FakeTools.h"
#include "Printers.h"
#include "TestChild.h"
#include "ToolSource.h"

#include <gmock/gmock.h>

#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(ToolSource, SaysWhichProcessesItSaw)
{
    const TestChild child(TestChild::endsOnTerm);
    TestChild ended(TestChild::endsOnTerm);
    const pid_t endedPid = ended.pid();
    kill(endedPid, SIGTERM);
    ended.collect();
    FakeTools tools;
    tools.addServer(child.pid(), "node", "*:3000", "/a");
    tools.addServer(endedPid, "node", "*:3001", "/b");

    const QList<RawListener> listeners = ToolSource(tools.options()).listeners({});
    ASSERT_EQ(listeners.size(), 2);
    EXPECT_EQ(listeners[0].identity, ProcessIdentity::of(child.pid()));
    ASSERT_TRUE(listeners[1].identity) << "so that it is told from one that gets its pid";
    const auto newcomer = TestChild::withPid(endedPid, TestChild::endsOnTerm);
    if (newcomer) {
        EXPECT_NE(listeners[1].identity, ProcessIdentity::of(endedPid));
    }
}

TEST(ToolSource, UsesTheSystemsToolsByDefault)
{
    ToolSource source;
    EXPECT_EQ(source.workingFolders({qint32(getpid())}, {}).front(), QDir::currentPath());
    const auto stats = source.stats({qint32(getpid())}, {}).front();
    ASSERT_TRUE(stats);
    EXPECT_LT(stats->uptimeSeconds, 3600);
    EXPECT_GT(stats->memoryMB, 1);
}

TEST(ToolSource, KnowsNothingOfProcessesThatAreNot)
{
    ToolSource source;
    for (const qint32 pid : {0, -1, std::numeric_limits<qint32>::max()}) {
        EXPECT_EQ(source.workingFolders({pid}, {}).front(), std::nullopt) << pid;
        EXPECT_EQ(source.stats({pid}, {}).front(), std::nullopt) << pid;
    }
}

TEST(ToolSource, AsksAboutSeveralProcessesAtOnce)
{
    // Each answer waits for the other request: sequential runs would never end.
    const FakeTools tools;
    tools.onPs(1, "touch asked-1; until [ -e asked-2 ]; do sleep 0.01; done; echo 1 1 1024");
    tools.onPs(2, "touch asked-2; until [ -e asked-1 ]; do sleep 0.01; done; echo 2 2 1024");
    ToolSource::Options options = tools.options();
    options.deadline = std::chrono::minutes(1);
    options.workers = 2;
    const auto stats = ToolSource(options).stats({1, 2}, {});
    ASSERT_TRUE(stats[0] && stats[1]);
    EXPECT_EQ(stats[0]->uptimeSeconds, 1);
    EXPECT_EQ(stats[1]->uptimeSeconds, 2);
}

} // namespace portolan
