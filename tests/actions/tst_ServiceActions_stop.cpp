// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "Printers.h"
#include "ServiceActions.h"
#include "Termination.h"
#include "TestChild.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <cstring>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

int runStopper(const QStringList &arguments, const QStringList &wrapper = {})
{
    const QStringList command = wrapper + QStringList{QStringLiteral(PORTOLAN_STOPPER)} + arguments;
    return QProcess::execute(command.first(), command.sliced(1));
}

} // namespace

class Stop : public testing::Test
{
protected:
    /// The service of `child`, as listed now.
    Service serviceOf(const TestChild &child)
    {
        if (const auto identity = ProcessIdentity::of(child.pid()))
            m_listed.insert(child.pid(), *identity);
        Service service;
        service.pid = child.pid();
        service.port = 3000;
        return service;
    }

    /// Waits for the end of `child`; returns the signal that ended it, or 0.
    static int endOf(TestChild &child)
    {
        return eventually([&] { return !child.isAlive(); }) ? child.collect() : 0;
    }

    /// Stops a process that has to be killed, and so returns when all earlier stops are over.
    void finishEarlierStops()
    {
        TestChild last(TestChild::ignoresTerm);
        m_actions.stop(serviceOf(last));
        ASSERT_EQ(endOf(last), SIGKILL);
    }

    QHash<qint32, ProcessIdentity> m_listed;
    ServiceActions m_actions{
        [this](const Service &service) { return std::optional(m_listed.value(service.pid)); }};
};

TEST_F(Stop, EndsAServerThatListensToSigterm)
{
    TestChild server(TestChild::endsOnTerm);
    m_actions.stop(serviceOf(server));
    EXPECT_EQ(server.collect(), SIGTERM);
}

TEST_F(Stop, KillsAServerThatDoesNotButGivesItItsTime)
{
    TestChild server(TestChild::ignoresTerm);
    const auto begin = std::chrono::steady_clock::now();
    m_actions.stop(serviceOf(server));
    EXPECT_EQ(endOf(server), SIGKILL);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, Termination::gracePeriod);
    EXPECT_EQ(Termination::gracePeriod, std::chrono::milliseconds(1500));
}

TEST_F(Stop, DoesNothingToAServerThatIsGone)
{
    TestChild server(TestChild::endsOnTerm);
    const Service service = serviceOf(server);
    kill(server.pid(), SIGKILL);
    EXPECT_EQ(server.collect(), SIGKILL);
    m_actions.stop(service);
    ServiceActions().stop(service);
    finishEarlierStops();
}

TEST_F(Stop, NeverSignalsAStrangerThatGotTheServersIdBeforeTheStop)
{
    TestChild server(TestChild::endsOnTerm);
    const Service service = serviceOf(server);
    ASSERT_TRUE(m_listed.contains(service.pid));
    kill(server.pid(), SIGKILL);
    server.collect();

    const auto stranger = TestChild::withPidLater(service.pid, TestChild::endsOnTerm);
    if (!stranger)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    m_actions.stop(service);
    finishEarlierStops();
    EXPECT_TRUE(stranger->isAlive());
}

TEST_F(Stop, NeverKillsAStrangerThatGotTheServersId)
{
    TestChild server(TestChild::endsOnTerm);
    const pid_t pid = server.pid();
    m_actions.stop(serviceOf(server));
    ASSERT_EQ(server.collect(), SIGTERM);

    const auto stranger = TestChild::withPid(pid, TestChild::ignoresTerm);
    if (!stranger)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    finishEarlierStops();
    EXPECT_TRUE(stranger->isAlive());
}

TEST_F(Stop, KillsEachWhenItsTimeIsOver)
{
    TestChild first(TestChild::ignoresTerm);
    TestChild second(TestChild::ignoresTerm);
    m_actions.stop(serviceOf(first));
    m_actions.stop(serviceOf(second));
    EXPECT_EQ(endOf(first), SIGKILL);
    EXPECT_EQ(endOf(second), SIGKILL);
}

TEST_F(Stop, KillsNoneAfterItsOwnEnd)
{
    TestChild server(TestChild::ignoresTerm);
    ServiceActions().stop(serviceOf(server));
    finishEarlierStops();
    EXPECT_TRUE(server.isAlive());
}

TEST_F(Stop, IsSignalled)
{
    QList<Service> stopped;
    QObject::connect(&m_actions, &ServiceActions::stopRequested, &m_actions,
                     [&](const Service &service) { stopped.append(service); });
    TestChild server(TestChild::endsOnTerm);
    m_actions.stop(serviceOf(server));
    EXPECT_EQ(stopped, QList{serviceOf(server)});
}

TEST_F(Stop, LeavesOtherUsersServersAlone)
{
    if (getuid() != 0)
        GTEST_SKIP() << "only root can be another user";
    const QStringList nobody{u"setpriv"_s, u"--reuid=65534"_s, u"--regid=65534"_s, u"--clear-groups"_s};
    if (QProcess::execute(nobody.first(), nobody.sliced(1) + QStringList{u"test"_s, u"-x"_s,
                                                                         QStringLiteral(PORTOLAN_STOPPER)}) !=
        0)
        GTEST_SKIP() << "the build folder is closed to other users";
    TestChild server(TestChild::endsOnTerm);
    EXPECT_EQ(runStopper({QString::number(server.pid())}, nobody), 0);
    EXPECT_TRUE(server.isAlive());
}

TEST_F(Stop, SignalsNoGroup)
{
    // Neither its own nor, with a negative id, another group.
    EXPECT_EQ(runStopper({u"0"_s}), 0);
    TestChild bystander(TestChild::endsOnTerm);
    ASSERT_EQ(setpgid(bystander.pid(), bystander.pid()), 0);
    EXPECT_EQ(runStopper({QString::number(-bystander.pid())}), 0);
    EXPECT_TRUE(bystander.isAlive());
}

TEST_F(Stop, LeavesItAtSigtermWhenTheProgramEnds)
{
    TestChild stubborn(TestChild::ignoresTerm);
    EXPECT_EQ(runStopper({QString::number(stubborn.pid()), u"quit"_s}), 0);
    EXPECT_TRUE(stubborn.isAlive());
    TestChild obedient(TestChild::endsOnTerm);
    EXPECT_EQ(runStopper({QString::number(obedient.pid()), u"quit"_s}), 0);
    EXPECT_EQ(obedient.collect(), SIGTERM);
}

} // namespace portolan
