// SPDX-License-Identifier: MIT
#include "DetachedProgram.h"
#include "FakePrograms.h"
#include "Printers.h"
#include "ScopedEnvironment.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using testing::Not;

namespace {

bool hasChildren()
{
    return waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
}

} // namespace

class Started : public testing::Test
{
protected:
    StartRecord start(const QStringList &arguments = {})
    {
        DetachedProgram::start(m_recorders.install(u"program"_s), arguments);
        return m_recorders.record(u"program"_s);
    }

    FakePrograms m_recorders;
};

TEST_F(Started, GetsItsArgumentsAsTheyAre)
{
    const QStringList arguments{u""_s,
                                u" two  words "_s,
                                u"-x"_s,
                                u"it's"_s,
                                u"\"$HOME\" `id` \\x"_s,
                                u"a\nb"_s,
                                u"größe 🦊"_s,
                                u"--folder=/a b"_s,
                                u"*"_s};
    EXPECT_EQ(start(arguments).arguments, arguments);
}

TEST_F(Started, IsInASessionOfItsOwnAndNobodysChildHere)
{
    const StartRecord record = start();
    EXPECT_GT(record.session, 0);
    EXPECT_NE(record.session, getsid(0));
    EXPECT_FALSE(hasChildren());
}

TEST_F(Started, HasNothingOpenButNull)
{
    const int inheritable = open("/proc/self/status", O_RDONLY);
    ASSERT_GE(inheritable, 0);
    const StartRecord record = start();
    close(inheritable);
    EXPECT_EQ(record.descriptors,
              QJsonObject({{u"0"_s, u"/dev/null"_s}, {u"1"_s, u"/dev/null"_s}, {u"2"_s, u"/dev/null"_s}}));
}

TEST_F(Started, HasTheUsersEnvironmentButNotThisPrograms)
{
    const ScopedEnvironment platform("QT_QPA_PLATFORM", "offscreen");
    const ScopedEnvironment token("XDG_ACTIVATION_TOKEN", "token");
    const ScopedEnvironment startup("DESKTOP_STARTUP_ID", "id");
    const ScopedEnvironment input("QT_IM_MODULE", "fcitx");
    const ScopedEnvironment own("MY_SETTING", "größe=1");
    const QStringList environment = start().environment;
    EXPECT_THAT(environment, Contains(u"MY_SETTING=größe=1"_s));
    EXPECT_THAT(environment, Contains(u"QT_IM_MODULE=fcitx"_s));
    EXPECT_THAT(environment, Contains(u"PATH="_s + qEnvironmentVariable("PATH")));
    EXPECT_THAT(environment, Contains(u"QT_QPA_PLATFORM=offscreen"_s));
    EXPECT_EQ(environment.filter(u"XDG_ACTIVATION_TOKEN"_s), QStringList());
    EXPECT_EQ(environment.filter(u"DESKTOP_STARTUP_ID"_s), QStringList());
}

TEST_F(Started, TakesSignalsAsByDefault)
{
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    const auto pipeBefore = signal(SIGPIPE, SIG_IGN);
    const StartRecord record = start();
    signal(SIGPIPE, pipeBefore);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(record.ignoredSignals, u"0000000000000000"_s);
    EXPECT_EQ(record.blockedSignals, u"0000000000000000"_s);
}

TEST_F(Started, LeavesOurOwnSignalsAsTheyWere)
{
    const auto before = signal(SIGPIPE, SIG_IGN);
    start();
    EXPECT_EQ(signal(SIGPIPE, before), SIG_IGN);
    sigset_t mask;
    sigprocmask(SIG_BLOCK, nullptr, &mask);
    EXPECT_FALSE(sigismember(&mask, SIGTERM));
}

TEST_F(Started, OutlivesWhoStartedIt)
{
    const QString sign = m_recorders.path(u"sign"_s);
    const QString script = u"while kill -0 %1 2>/dev/null; do sleep 0.01; done; echo > '%2'"_s;
    const pid_t starter = fork();
    if (starter == 0) {
        DetachedProgram::start(u"/bin/sh"_s, {u"-c"_s, script.arg(getpid()).arg(sign)});
        _exit(0);
    }
    ASSERT_EQ(waitpid(starter, nullptr, 0), starter);
    EXPECT_TRUE(eventually([&] { return QFile::exists(sign); }));
}

TEST(DetachedProgram, LeavesNothingBehindWhenThereIsNoSuchProgram)
{
    DetachedProgram::start(u"/no/such/program"_s, {});
    DetachedProgram::start(u"/etc/passwd"_s, {});
    EXPECT_FALSE(hasChildren());
}

TEST(DetachedProgram, TellsHowItEnded)
{
    const auto statusOf = [](const QString &script) {
        return DetachedProgram::startAndWatch(u"/bin/sh"_s, {u"-c"_s, script}, 30s);
    };
    EXPECT_EQ(statusOf(u"exit 0"_s), 0);
    EXPECT_EQ(statusOf(u"exit 3"_s), 3);
    EXPECT_EQ(statusOf(u"kill -TERM $$"_s), 128 + SIGTERM);
    EXPECT_FALSE(hasChildren());
}

TEST(DetachedProgram, TellsWhenItCouldNotBeStarted)
{
    EXPECT_EQ(DetachedProgram::startAndWatch(u"/no/such/program"_s, {}, 30s), 127);
    EXPECT_FALSE(hasChildren());
}

TEST(DetachedProgram, IsWatchedNoLongerThanAsked)
{
    FakePrograms recorders;
    const QString session = recorders.path(u"session"_s);
    const QString script = u"ps -o sid= -p $$ > '%1'; exec sleep 600"_s.arg(session);
    EXPECT_EQ(DetachedProgram::startAndWatch(u"/bin/sh"_s, {u"-c"_s, script}, 10ms), std::nullopt);
    QFile file(session);
    ASSERT_TRUE(eventually([&] { return file.size() > 0; }) && file.open(QFile::ReadOnly));
    // It leads the session, and so has its number.
    const pid_t leader = file.readAll().trimmed().toInt();
    ASSERT_GT(leader, 0);
    EXPECT_NE(leader, getsid(0));
    EXPECT_EQ(kill(leader, SIGKILL), 0);
    EXPECT_EQ(waitpid(leader, nullptr, 0), leader);
}

} // namespace portolan
