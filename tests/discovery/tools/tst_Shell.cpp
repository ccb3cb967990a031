// SPDX-License-Identifier: MIT
#include "FakeTools.h"
#include "FileDescriptor.h"
#include "Printers.h"
#include "ProcessFacts.h"
#include "Shell.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QString shell(const QString &script)
{
    return Shell::run(u"/bin/sh"_s, {u"-c"_s, script});
}

Shell::Result shell(const QString &script, const Shell::Limits &limits)
{
    return Shell::run(u"/bin/sh"_s, {u"-c"_s, script}, limits);
}

/// Real children; neither a child nor a descriptor may be left over.
class ShellRun : public testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_TRUE(waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD) << "a child was not reaped";
        EXPECT_EQ(openDescriptors(), m_descriptors);
    }

    QString path(const QString &name) const { return m_directory.filePath(name); }
    pid_t pidIn(const QString &name) const { return contentsOf(path(name)).trimmed().toInt(); }

private:
    QTemporaryDir m_directory;
    qsizetype m_descriptors = openDescriptors();
};

} // namespace

TEST_F(ShellRun, GivesTheWholeOutputWithItsLastNewline)
{
    EXPECT_EQ(Shell::run(u"/bin/echo"_s, {u"one"_s, u"two"_s}), u"one two\n"_s);
    EXPECT_EQ(shell(u"printf 'no newline'"_s), u"no newline"_s);
    EXPECT_EQ(shell(u"printf 'café 🦊'"_s), u"café 🦊"_s);
    EXPECT_EQ(shell(u"printf '\\357\\273\\277mark'"_s), u"\uFEFFmark"_s);
    EXPECT_EQ(shell(u"printf 'a\\000b'"_s), u"a\0b"_s);
}

TEST_F(ShellRun, PassesArgumentsWithoutAnyShell)
{
    EXPECT_EQ(Shell::run(u"/usr/bin/printf"_s, {u"[%s]"_s, u"a b"_s, u""_s, u"$HOME * ; é \" '"_s, u"-n"_s}),
              u"[a b][][$HOME * ; é \" '][-n]"_s);
}

TEST_F(ShellRun, NoOutputIsEmpty)
{
    EXPECT_EQ(Shell::run(u"/bin/true"_s, {}), QString());
}

TEST_F(ShellRun, TheExitStatusIsNotLookedAt)
{
    EXPECT_EQ(shell(u"echo good; exit 1"_s), u"good\n"_s);
    EXPECT_EQ(shell(u"exit 1"_s), QString());
    EXPECT_EQ(shell(u"echo half; kill -SEGV $$"_s), u"half\n"_s);
    EXPECT_EQ(shell(u"printf ha; kill -KILL $$; printf lf"_s), u"ha"_s);
}

TEST_F(ShellRun, WhatCannotBeLaunchedIsEmpty)
{
    FakeTools::write(path(u"plain"_s), "#!/bin/sh\necho ran\n");
    FakeTools::write(path(u"text"_s), "echo ran\n");
    FakeTools::setExecutable(path(u"text"_s));
    FakeTools::write(path(u"orphan"_s), "#!/no/such/interpreter\n");
    FakeTools::setExecutable(path(u"orphan"_s));
    // An ELF header of another architecture.
    QByteArray foreign = contentsOf(u"/bin/true"_s);
    ASSERT_TRUE(foreign.startsWith("\177ELF"));
    foreign[18] = char(0xfe);
    foreign[19] = char(0xca);
    FakeTools::write(path(u"foreign"_s), foreign);
    FakeTools::setExecutable(path(u"foreign"_s));

    EXPECT_EQ(Shell::run(u"/no/such/tool"_s, {}), QString());
    EXPECT_EQ(Shell::run(QString(), {}), QString());
    EXPECT_EQ(Shell::run(u"/"_s, {}), QString());
    for (const QString &name : {u"plain"_s, u"text"_s, u"orphan"_s, u"foreign"_s})
        EXPECT_EQ(Shell::run(path(name), {}), QString()) << name.toStdString();
    EXPECT_EQ(Shell::run(u"/bin/echo"_s, {QString(200'000, u'x')}), QString());
}

TEST_F(ShellRun, OutputThatIsNotUtf8IsEmpty)
{
    EXPECT_EQ(shell(u"printf 'good \\377'"_s), QString());
    EXPECT_EQ(shell(u"printf 'good \\303'"_s), QString()) << "cut within a character";
    EXPECT_EQ(shell(u"printf '\\355\\240\\200'"_s), QString()) << "a surrogate";
    EXPECT_EQ(shell(u"printf '\\300\\200'"_s), QString()) << "an overlong NUL";
}

TEST_F(ShellRun, AFloodOfOutputIsReadWhole)
{
    const QString output = shell(u"head -c 20000000 /dev/zero | tr '\\000' x"_s);
    EXPECT_EQ(output.size(), 20'000'000);
    EXPECT_EQ(output.count(u'x'), 20'000'000);
}

TEST_F(ShellRun, AFloodOfErrorsDoesNotBlock)
{
    EXPECT_EQ(shell(u"head -c 20000000 /dev/zero >&2; echo done"_s), u"done\n"_s);
}

TEST_F(ShellRun, OutputIsBounded)
{
    EXPECT_EQ(shell(u"printf 12345678"_s, {.maxOutput = 8}).output, u"12345678"_s);
    const Shell::Result result = shell(u"printf 123456789"_s, {.maxOutput = 8});
    EXPECT_EQ(result.output, QString());
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(Shell::run(u"/usr/bin/yes"_s, {}), QString()) << "endless";
}

TEST_F(ShellRun, WaitsForAChildThatClosesItsOutputAndLivesOn)
{
    EXPECT_EQ(shell(u"echo early; exec >&-; sleep 0.2; touch '%1'"_s.arg(path(u"late"_s))), u"early\n"_s);
    EXPECT_TRUE(QFile::exists(path(u"late"_s)));
}

TEST_F(ShellRun, ReadsUntilTheLastHolderOfThePipeIsGone)
{
    EXPECT_EQ(shell(u"(sleep 0.2; echo grandchild) & echo child"_s), u"child\ngrandchild\n"_s);
}

TEST_F(ShellRun, AQuickRunIsWithinItsDeadline)
{
    const Shell::Result result = shell(u"echo quick"_s, {.deadline = 1h});
    EXPECT_EQ(result.output, u"quick\n"_s);
    EXPECT_FALSE(result.timedOut);
}

TEST_F(ShellRun, AnEndlessDeadlineIsNone)
{
    EXPECT_EQ(shell(u"echo x"_s, {.deadline = std::chrono::milliseconds::max()}).output, u"x\n"_s);
}

struct Hang
{
    const char *name;
    QString script;
};

class ShellHang : public ShellRun, public testing::WithParamInterface<Hang>
{};

TEST_P(ShellHang, EndsAtTheDeadlineWithTheWholeGroup)
{
    QString script = u"echo $$ > '%1'; "_s.arg(path(u"pid"_s)) + GetParam().script;
    script.replace(u"GRANDCHILD"_s, path(u"grandchild"_s));
    const Shell::Result result = shell(script, {.deadline = 400ms});
    EXPECT_EQ(result.output, QString());
    EXPECT_TRUE(result.timedOut);
    ASSERT_GT(pidIn(u"pid"_s), 0);
    EXPECT_FALSE(isRunning(pidIn(u"pid"_s)));
    if (QFile::exists(path(u"grandchild"_s))) {
        EXPECT_GT(pidIn(u"grandchild"_s), 0);
        EXPECT_TRUE(waitUntil([&] { return !isRunning(pidIn(u"grandchild"_s)); }));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ShellHang,
    testing::Values(Hang{"silent", u"exec sleep 1000"_s},
                    Hang{"afterHalfALine", u"printf half; exec sleep 1000"_s},
                    Hang{"ignoresTerm", u"trap '' TERM HUP INT; while :; do sleep 1; done"_s},
                    Hang{"closesItsOutputAndLivesOn", u"echo all; exec >&-; exec sleep 1000"_s},
                    Hang{"withAGrandchild", u"sleep 1000 & echo $! > 'GRANDCHILD'; wait"_s},
                    Hang{"endsButItsGrandchildKeepsThePipe", u"sleep 1000 & echo $! > 'GRANDCHILD'"_s},
                    Hang{"isStopped", u"kill -STOP $$"_s},
                    Hang{"trickles", u"while :; do echo x; sleep 0.02; done"_s}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(ShellRun, AFloodEndsAtTheDeadlineToo)
{
    const Shell::Result result = Shell::run(
        u"/usr/bin/yes"_s, {}, {.deadline = 200ms, .maxOutput = std::numeric_limits<qsizetype>::max() / 2});
    EXPECT_EQ(result.output, QString());
    EXPECT_TRUE(result.timedOut);
}

TEST_F(ShellRun, AGrandchildThatLeftTheGroupCannotHoldTheRun)
{
    const QString script = u"setsid sh -c 'echo $$ > \"%1\"; exec sleep 1000' & wait"_s;
    EXPECT_TRUE(shell(script.arg(path(u"deserter"_s)), {.deadline = 1500ms}).timedOut);
    ASSERT_TRUE(waitUntil([&] { return pidIn(u"deserter"_s) > 0; }));
    kill(pidIn(u"deserter"_s), SIGKILL);
}

TEST_F(ShellRun, AStopRequestEndsTheRun)
{
    for (const QString &script : {u"exec sleep 1000"_s, u"exec >&-; exec sleep 1000"_s}) {
        QFile::remove(path(u"pid"_s));
        std::stop_source stop;
        std::jthread stopper([&] {
            waitUntil([&] { return pidIn(u"pid"_s) > 0; });
            stop.request_stop();
        });
        const Shell::Result result = shell(u"echo $$ > '%1'; "_s.arg(path(u"pid"_s)) + script,
                                           {.deadline = 1h, .stop = stop.get_token()});
        EXPECT_EQ(result.output, QString());
        EXPECT_FALSE(result.timedOut);
        EXPECT_FALSE(isRunning(pidIn(u"pid"_s)));
    }
}

TEST_F(ShellRun, AfterAStopNothingIsStarted)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(shell(u"touch '%1'; echo x"_s.arg(path(u"ran"_s)), {.stop = stop.get_token()}).output,
              QString());
    EXPECT_FALSE(QFile::exists(path(u"ran"_s)));
}

TEST_F(ShellRun, TheChildInheritsNoDescriptorButStandardInput)
{
    const FileDescriptor leak(open("/dev/null", O_RDONLY));
    const FileDescriptor high(fcntl(leak.get(), F_DUPFD, 700));
    ASSERT_TRUE(high.isOpen());
    // The one above the standard ones is ls's own, on the folder that it lists.
    EXPECT_EQ(Shell::run(u"/bin/ls"_s, {u"/proc/self/fd"_s}), u"0\n1\n2\n3\n"_s);
    std::array<char, 4096> input{};
    ASSERT_GT(readlink("/proc/self/fd/0", input.data(), input.size() - 1), 0);
    EXPECT_EQ(Shell::run(u"/usr/bin/readlink"_s, {u"/proc/self/fd/0"_s}),
              QString::fromUtf8(input.data()) + u'\n');
    EXPECT_EQ(Shell::run(u"/usr/bin/readlink"_s, {u"/proc/self/fd/2"_s}), u"/dev/null\n"_s);
}

TEST_F(ShellRun, TheChildsSoftDescriptorLimitIsLow)
{
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit raised = before;
    raised.rlim_cur = before.rlim_max;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &raised), 0);
    const rlim_t expected = std::min<rlim_t>(1024, raised.rlim_cur);
    EXPECT_EQ(shell(u"ulimit -Sn"_s), QString::number(expected) + u'\n');
    rlimit lowered = before;
    lowered.rlim_cur = 300;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
    EXPECT_EQ(shell(u"ulimit -Sn"_s), u"300\n"_s);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST_F(ShellRun, TheChildStartsWithDefaultSignals)
{
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigaddset(&blocked, SIGUSR2);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto pipeBefore = signal(SIGPIPE, SIG_IGN);
    const auto userBefore = signal(SIGUSR1, SIG_IGN);
    EXPECT_EQ(Shell::run(u"/bin/grep"_s, {u"-E"_s, u"^Sig(Blk|Ign)"_s, u"/proc/self/status"_s}),
              u"SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n"_s);
    signal(SIGPIPE, pipeBefore);
    signal(SIGUSR1, userBefore);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(ShellRun, TheChildLeadsAGroupOfItsOwn)
{
    EXPECT_EQ(
        shell(u"read -r pid name state parent group rest < /proc/$$/stat; [ $group = $$ ] && echo leads"_s),
        u"leads\n"_s);
}

TEST_F(ShellRun, TheChildsEnvironmentIsOursInUtf8WithPlainNumbers)
{
    const QByteArray before = qgetenv("LC_ALL");
    qputenv("LC_ALL", "de_DE.UTF-8");
    qputenv("PORTOLAN_TEST_MARK", "a b=c");
    qputenv("XDG_ACTIVATION_TOKEN", "x");
    const QStringList environment = Shell::run(u"/usr/bin/env"_s, {}).split(u'\n');
    EXPECT_EQ(environment.filter(u"LC_ALL="_s), QStringList{u"LC_ALL=C.UTF-8"_s});
    EXPECT_TRUE(environment.contains(u"PORTOLAN_TEST_MARK=a b=c"_s));
    EXPECT_TRUE(environment.filter(u"XDG_ACTIVATION_TOKEN="_s).isEmpty());
    qputenv("LC_ALL", before);
    qunsetenv("PORTOLAN_TEST_MARK");
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(ShellRun, WorksWithChildSignalsIgnored)
{
    const auto before = signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shell(u"echo x; exit 1"_s), u"x\n"_s);
    EXPECT_EQ(shell(u"echo x; exec >&-; sleep 0.1"_s, {.deadline = 1h}).output, u"x\n"_s);
    EXPECT_TRUE(shell(u"exec sleep 1000"_s, {.deadline = 50ms}).timedOut);
    EXPECT_EQ(Shell::run(u"/no/such/tool"_s, {}), QString());
    signal(SIGCHLD, before);
}

TEST_F(ShellRun, WorksWhileSignalsArrive)
{
    static std::atomic<int> arrived = 0;
    struct sigaction counting = {};
    struct sigaction before = {};
    counting.sa_handler = [](int) { ++arrived; };
    ASSERT_EQ(sigaction(SIGALRM, &counting, &before), 0);
    const itimerval often{{0, 2000}, {0, 2000}};
    ASSERT_EQ(setitimer(ITIMER_REAL, &often, nullptr), 0);
    EXPECT_EQ(shell(u"sleep 0.1; head -c 3000000 /dev/zero | tr '\\000' x; exec >&-; sleep 0.1"_s).size(),
              3'000'000);
    EXPECT_EQ(shell(u"sleep 0.1; echo x; exec >&-; sleep 0.1"_s, {.deadline = 1h}).output, u"x\n"_s);
    EXPECT_TRUE(shell(u"exec sleep 1000"_s, {.deadline = 100ms}).timedOut);
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    EXPECT_GT(arrived, 10);
}

TEST_F(ShellRun, WorksWithoutStandardDescriptors)
{
    const auto runsWithoutStandardDescriptors = [] {
        close(0);
        close(1);
        close(2);
        const bool all = Shell::run(u"/bin/echo"_s, {u"x"_s}) == u"x\n"_s &&
                         shell(u"cat; echo error >&2; echo y"_s) == u"y\n"_s &&
                         Shell::run(u"/bin/ls"_s, {u"/proc/self/fd"_s}) == u"0\n1\n2\n3\n"_s;
        _exit(all ? 0 : 1);
    };
    EXPECT_EXIT(runsWithoutStandardDescriptors(), testing::ExitedWithCode(0), "");
}

TEST_F(ShellRun, WithoutFreeDescriptorsIsEmptyAndRecovers)
{
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    // At whichever descriptor number it fails, nothing leaks.
    const rlim_t used = rlim_t(openDescriptors());
    for (rlim_t limit = used - 1; limit < used + 12; ++limit) {
        rlimit low = before;
        low.rlim_cur = limit;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
        const QString output = Shell::run(u"/bin/echo"_s, {u"x"_s}, {.deadline = 1h}).output;
        setrlimit(RLIMIT_NOFILE, &before);
        EXPECT_TRUE(output.isEmpty() || output == u"x\n"_s) << limit << ' ' << output.toStdString();
    }
    EXPECT_EQ(Shell::run(u"/bin/echo"_s, {u"x"_s}), u"x\n"_s);
}

TEST_F(ShellRun, RefusesWhatItCouldNotStop)
{
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 0;
    const std::stop_source source;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const QString output =
        Shell::run(u"/bin/sh"_s, {u"-c"_s, u"> '%1'"_s.arg(path(u"sign"_s))}, {.stop = source.get_token()})
            .output;
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(output, QString());
    EXPECT_FALSE(QFile::exists(path(u"sign"_s)));
}

TEST_F(ShellRun, TheChildDiesWithThisProgram)
{
    const QString pidFile = path(u"pid"_s);
    const auto leaveDuringARun = [&] {
        std::thread runner([&] { (void)shell(u"echo $$ > '%1'; exec sleep 1000"_s.arg(pidFile)); });
        waitUntil([&] { return pidIn(u"pid"_s) > 0; });
        _exit(0);
    };
    EXPECT_EXIT(leaveDuringARun(), testing::ExitedWithCode(0), "");
    ASSERT_GT(pidIn(u"pid"_s), 0);
    EXPECT_TRUE(waitUntil([&] { return !isRunning(pidIn(u"pid"_s)); }));
}

TEST_F(ShellRun, ManyThreadsRunAtOnce)
{
    std::atomic<int> right = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 8; ++thread) {
            threads.emplace_back([&right, thread] {
                for (int run = 0; run < 12; ++run) {
                    const QString text = u"%1 of %2"_s.arg(run).arg(thread);
                    right += Shell::run(u"/bin/echo"_s, {text}, {.deadline = 1h}).output == text + u'\n';
                    right += shell(u"exec sleep 1000"_s, {.deadline = 5ms}).timedOut;
                }
            });
        }
    }
    EXPECT_EQ(right, 8 * 12 * 2);
}

} // namespace portolan
