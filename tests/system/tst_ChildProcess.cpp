// SPDX-License-Identifier: MIT
#include "ChildProcess.h"
#include "FileDescriptor.h"
#include "Printers.h"
#include "ProcessFacts.h"
#include "UnreapedChildren.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

static std::optional<ChildProcess> startShell(const QString &script, int standardOutput = STDOUT_FILENO)
{
    return ChildProcess::start(u"/bin/sh"_s, {u"-c"_s, script}, ChildSetup::environment(), standardOutput);
}

TEST(ChildProcess, WhatCannotBeStartedIsNothing)
{
    for (const QString &path : {u"/no/such/program"_s, u"/"_s, QString()})
        EXPECT_FALSE(ChildProcess::start(path, {}, {}, STDOUT_FILENO));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(ChildProcess, WaitEndsWithTheChild)
{
    std::optional<ChildProcess> child = startShell(u"exit 3"_s);
    ASSERT_TRUE(child);
    const pid_t pid = child->pid();
    EXPECT_TRUE(child->wait());
    EXPECT_EQ(processState(pid), '\0');
}

TEST(ChildProcess, WaitEndsAtTheDeadline)
{
    std::optional<ChildProcess> child = startShell(u"exec sleep 1000"_s);
    ASSERT_TRUE(child);
    EXPECT_FALSE(child->wait(QDeadlineTimer(20)));
    EXPECT_TRUE(isRunning(child->pid()));
    child->killGroup();
    EXPECT_TRUE(child->wait());
}

TEST(ChildProcess, WaitEndsWithAnInterruption)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const FileDescriptor reader(ends[0]);
    const FileDescriptor writer(ends[1]);
    std::optional<ChildProcess> child = startShell(u"exec sleep 1000"_s);
    ASSERT_TRUE(child);
    ASSERT_EQ(write(writer.get(), "x", 1), 1);
    EXPECT_FALSE(child->wait(QDeadlineTimer(QDeadlineTimer::Forever), reader.get()));
    child->killGroup();
    EXPECT_TRUE(child->wait());
}

TEST(ChildProcess, RunsOnWhenNobodyWaits)
{
    pid_t left = 0;
    {
        const std::optional<ChildProcess> child = startShell(u"exec sleep 1000"_s);
        ASSERT_TRUE(child);
        left = child->pid();
    }
    EXPECT_TRUE(isRunning(left));
    kill(left, SIGKILL);
    EXPECT_EQ(waitpid(left, nullptr, 0), left);
}

TEST(UnreapedChildren, AreReapedOnceTheyHaveEnded)
{
    std::optional<ChildProcess> child = startShell(u"exec sleep 1000"_s);
    ASSERT_TRUE(child);
    const pid_t pid = child->pid();
    UnreapedChildren unreaped;
    unreaped.add(*std::move(child));
    unreaped.reap();
    EXPECT_TRUE(isRunning(pid));
    kill(pid, SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return processState(pid) == 'Z'; }));
    unreaped.reap();
    EXPECT_EQ(processState(pid), '\0');
}

TEST(ChildProcess, KillReachesTheWholeGroupEvenBehindItsLeader)
{
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const FileDescriptor reader(ends[0]);
    FileDescriptor writer(ends[1]);
    std::optional<ChildProcess> child = startShell(u"sleep 1000 & echo $!"_s, writer.get());
    writer.close();
    ASSERT_TRUE(child);
    char digits[32] = {};
    ASSERT_GT(read(reader.get(), digits, sizeof digits - 1), 0);
    const pid_t grandchild = pid_t(strtol(digits, nullptr, 10));
    ASSERT_TRUE(waitUntil([&] { return processState(child->pid()) == 'Z'; }));
    ASSERT_TRUE(isRunning(grandchild));
    child->killGroup();
    EXPECT_TRUE(child->wait());
    EXPECT_TRUE(waitUntil([&] { return !isRunning(grandchild); }));
}

} // namespace portolan
