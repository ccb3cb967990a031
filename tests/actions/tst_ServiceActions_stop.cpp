#include "Printers.h"
#include "ServiceActions_p.h"
#include "TestChild.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <cstring>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

Service serviceOf(const TestChild &child)
{
    Service service;
    service.pid = child.pid();
    service.port = 3000;
    return service;
}

std::optional<ProcessIdentity> identityOf(const TestChild &child)
{
    return ProcessIdentity::of(child.pid());
}

/// Stops a process that has to be killed, and so returns when all earlier stops are over.
void finishEarlierStops()
{
    TestChild last(TestChild::ignoresTerm);
    ServiceActions::stop(serviceOf(last), identityOf(last));
    ASSERT_EQ(last.collect(), SIGKILL);
}

int runStopper(const QStringList &arguments, const QStringList &wrapper = {})
{
    const QStringList command = wrapper + QStringList{QStringLiteral(PORTOLAN_STOPPER)} + arguments;
    return QProcess::execute(command.first(), command.sliced(1));
}

} // namespace

TEST(Stop, EndsAServerThatListensToSigterm)
{
    TestChild server(TestChild::endsOnTerm);
    ServiceActions::stop(serviceOf(server), identityOf(server));
    EXPECT_EQ(server.collect(), SIGTERM);
}

TEST(Stop, KillsAServerThatDoesNotButGivesItItsTime)
{
    TestChild server(TestChild::ignoresTerm);
    const auto begin = std::chrono::steady_clock::now();
    ServiceActions::stop(serviceOf(server), identityOf(server));
    EXPECT_EQ(server.collect(), SIGKILL);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, ServiceActions::stopGrace);
    EXPECT_EQ(ServiceActions::stopGrace, std::chrono::milliseconds(1500));
}

TEST(Stop, DoesNothingToAServerThatIsGone)
{
    TestChild server(TestChild::endsOnTerm);
    const Service service = serviceOf(server);
    const auto identity = identityOf(server);
    kill(server.pid(), SIGKILL);
    EXPECT_EQ(server.collect(), SIGKILL);
    ServiceActions::stop(service, identity);
    ServiceActions::stop(service, {});
    finishEarlierStops();
}

TEST(Stop, NeverSignalsAStrangerThatGotTheServersIdBeforeTheStop)
{
    TestChild server(TestChild::endsOnTerm);
    const Service service = serviceOf(server);
    const auto identity = identityOf(server);
    ASSERT_TRUE(identity);
    kill(server.pid(), SIGKILL);
    server.collect();

    const auto stranger = TestChild::withPidLater(service.pid, TestChild::endsOnTerm);
    if (!stranger)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    ServiceActions::stop(service, identity);
    finishEarlierStops();
    EXPECT_TRUE(stranger->isAlive());
}

TEST(Stop, NeverKillsAStrangerThatGotTheServersId)
{
    TestChild server(TestChild::endsOnTerm);
    const pid_t pid = server.pid();
    ServiceActions::stop(serviceOf(server), identityOf(server));
    ASSERT_EQ(server.collect(), SIGTERM);

    const auto stranger = TestChild::withPid(pid, TestChild::ignoresTerm);
    if (!stranger)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    finishEarlierStops();
    EXPECT_TRUE(stranger->isAlive());
}

TEST(Stop, NeedsNoEventLoop)
{
    TestChild obedient(TestChild::endsOnTerm);
    EXPECT_EQ(runStopper({QString::number(obedient.pid())}), 0);
    EXPECT_EQ(obedient.collect(), SIGTERM);

    TestChild stubborn(TestChild::ignoresTerm);
    EXPECT_EQ(runStopper({QString::number(stubborn.pid())}), 0);
    EXPECT_EQ(stubborn.collect(), SIGKILL);
}

TEST(Stop, LeavesOtherUsersServersAlone)
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

TEST(Stop, SignalsNoGroup)
{
    // Neither its own, nor, with a negative id, another.
    EXPECT_EQ(runStopper({u"0"_s}), 0);
    TestChild bystander(TestChild::endsOnTerm);
    ASSERT_EQ(setpgid(bystander.pid(), bystander.pid()), 0);
    EXPECT_EQ(runStopper({QString::number(-bystander.pid())}), 0);
    EXPECT_TRUE(bystander.isAlive());
}

TEST(Stop, LeavesItAtSigtermWhenTheProgramEnds)
{
    TestChild stubborn(TestChild::ignoresTerm);
    EXPECT_EQ(runStopper({QString::number(stubborn.pid()), u"quit"_s}), 0);
    EXPECT_TRUE(stubborn.isAlive());
    TestChild obedient(TestChild::endsOnTerm);
    EXPECT_EQ(runStopper({QString::number(obedient.pid()), u"quit"_s}), 0);
    EXPECT_EQ(obedient.collect(), SIGTERM);
}

} // namespace portolan
