// SPDX-License-Identifier: MIT
#include "ChildSetup.h"
#include "Printers.h"
#include "ScopedEnvironment.h"

#include <gmock/gmock.h>

namespace portolan {

using testing::Contains;
using testing::Not;

TEST(ChildSetup, PassesOnTheEnvironmentWithoutWhatIsForThisProgramAlone)
{
    const ScopedEnvironment mark("PORTOLAN_TEST_MARK", "a b=c");
    const ScopedEnvironment platform("QT_QPA_PLATFORM", "wayland");
    const ScopedEnvironment token("XDG_ACTIVATION_TOKEN", "token");
    const QList<QByteArray> environment = ChildSetup::environment();
    EXPECT_THAT(environment, Contains(QByteArray("PORTOLAN_TEST_MARK=a b=c")));
    EXPECT_THAT(environment, Contains(QByteArray("QT_QPA_PLATFORM=wayland")));
    EXPECT_THAT(environment, Not(Contains(QByteArray("XDG_ACTIVATION_TOKEN=token"))));
}

TEST(ChildSetup, HoldsSignalsBackForAScope)
{
    const auto isBlocked = [](int signal) {
        sigset_t mask;
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        return sigismember(&mask, signal) == 1;
    };
    ASSERT_FALSE(isBlocked(SIGTERM));
    {
        const ChildSetup::SignalsHeld held;
        EXPECT_TRUE(isBlocked(SIGTERM));
        EXPECT_TRUE(isBlocked(SIGUSR1));
    }
    EXPECT_FALSE(isBlocked(SIGTERM));
}

struct PassedOnCase
{
    const char *assignment;
    bool isPassedOn;
};

class PassedOn : public testing::TestWithParam<PassedOnCase>
{};

TEST_P(PassedOn, DependsOnTheName)
{
    EXPECT_EQ(ChildSetup::isPassedOn(GetParam().assignment), GetParam().isPassedOn) << GetParam().assignment;
}

INSTANTIATE_TEST_SUITE_P(
    Variables, PassedOn,
    testing::Values(PassedOnCase{"HOME=/root", true}, PassedOnCase{"EMPTY=", true}, PassedOnCase{"", true},
                    PassedOnCase{"no assignment", true}, PassedOnCase{"QT_QPA_PLATFORM=wayland", true},
                    PassedOnCase{"QT_IM_MODULE=ibus", true}, PassedOnCase{"QML_IMPORT_PATH=/x", true},
                    PassedOnCase{"XDG_CONFIG_HOME=/x", true}, PassedOnCase{"XDG_ACTIVATION_TOKEN=t", false},
                    PassedOnCase{"XDG_ACTIVATION_TOKEN_OF_OURS=t", true},
                    PassedOnCase{"DESKTOP_STARTUP_ID=t", false}));

} // namespace portolan
