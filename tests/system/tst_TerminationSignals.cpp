// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "Printers.h"
#include "TerminationSignals.h"

#include <gtest/gtest.h>

#include <csignal>

#include <poll.h>

namespace portolan {

class Termination : public testing::TestWithParam<int>
{};

TEST_P(Termination, ArrivesAsAQtSignal)
{
    TerminationSignals signals;
    QList<int> received;
    QObject::connect(&signals, &TerminationSignals::received, [&](int signal) { received.append(signal); });
    EXPECT_FALSE(TerminationSignals::isPending());
    raise(GetParam());
    raise(GetParam());
    EXPECT_TRUE(TerminationSignals::isPending());
    EXPECT_TRUE(received.isEmpty()) << "handled by the event loop, not in the signal handler";
    EXPECT_TRUE(eventually([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QList{GetParam()});
}

INSTANTIATE_TEST_SUITE_P(Signals, Termination, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto &test) { return sigabbrev_np(test.param); });

TEST(TerminationSignals, LeavesAnIgnoredSignalIgnored)
{
    const auto old = signal(SIGHUP, SIG_IGN); // as under nohup
    {
        const TerminationSignals signals;
        struct sigaction current
        {};
        sigaction(SIGHUP, nullptr, &current);
        EXPECT_EQ(current.sa_handler, SIG_IGN);
    }
    signal(SIGHUP, old);
}

TEST(TerminationSignals, AreForgottenWithTheObject)
{
    for (int i = 0; i < 2; ++i) {
        const TerminationSignals signals;
        pollfd watched{TerminationSignals::descriptor(), POLLIN, 0};
        EXPECT_EQ(poll(&watched, 1, 0), 0);
        raise(SIGTERM);
        EXPECT_EQ(poll(&watched, 1, 0), 1);
    }
    pollfd watched{TerminationSignals::descriptor(), POLLIN, 0};
    EXPECT_EQ(poll(&watched, 1, 0), 0);
}

TEST(TerminationSignals, GivesTheSignalsBack)
{
    {
        const TerminationSignals signals;
    }
    struct sigaction current
    {};
    sigaction(SIGTERM, nullptr, &current);
    EXPECT_EQ(current.sa_handler, SIG_DFL);
}

} // namespace portolan
