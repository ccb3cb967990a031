// SPDX-License-Identifier: MIT
// What is the tool source's own; the scan's tests have the rest.
#include "FakeTools.h"
#include "Printers.h"
#include "TestChild.h"
#include "ToolSource.h"

#include <gmock/gmock.h>

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
    EXPECT_GT(stats->memoryMB, 1);
}

} // namespace portolan
