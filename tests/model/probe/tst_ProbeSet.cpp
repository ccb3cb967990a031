// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "ProbeSet.h"
#include "ScriptedServer.h"

#include <gtest/gtest.h>

#include <limits>

#include <sys/eventfd.h>

namespace portolan {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

TEST(ProbeSet, LeavesTheProgramDescriptors)
{
    EXPECT_EQ(ProbeSet::mostUnderWay(0), 1);
    EXPECT_EQ(ProbeSet::mostUnderWay(32), 8);
    EXPECT_EQ(ProbeSet::mostUnderWay(256), 192);
    EXPECT_EQ(ProbeSet::mostUnderWay(1024), 512);
    EXPECT_EQ(ProbeSet::mostUnderWay(std::numeric_limits<int>::max()), 512);
}

TEST(ProbeSet, CountsWhatArrivedWhileNobodyReadIt)
{
    const ScriptedServer server(ScriptedServer::answers("HTTP/1.1 200 OK\r\n\r\n"));
    const FileDescriptor wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    ProbeSet probes(wake.get());
    ASSERT_TRUE(probes.isValid());
    QList<QFuture<Health>> outcomes;
    for (int i = 0; i < 200; ++i) {
        HealthPromise promise;
        outcomes.append(promise.future());
        probes.add({server.port(), std::move(promise)});
    }

    std::this_thread::sleep_for(Probe::totalLimit + 100ms); // as when the program was stopped for a while
    const auto end = Clock::now() + 60s;
    while (!std::ranges::all_of(outcomes, &QFuture<Health>::isFinished) && Clock::now() < end)
        EXPECT_FALSE(probes.advance());

    for (const QFuture<Health> &outcome : outcomes)
        EXPECT_EQ(outcome.result().status(), 200);
    EXPECT_EQ(server.methods(), QList<QByteArray>(200, "HEAD"));
}

} // namespace portolan
