// SPDX-License-Identifier: MIT
#include "ProcessHandle.h"
#include "TestChild.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <limits>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace portolan {

using namespace std::chrono_literals;

namespace {

/// Makes pidfd_open fail as on a kernel without it, for the rest of this process's life.
bool hidePidfds()
{
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter = {std::size(program), program};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0 &&
           syscall(SYS_pidfd_open, getpid(), 0) < 0 && errno == ENOSYS;
}

/// Runs `check` in a process of its own and returns its exit status.
template <typename Check>
int inAnotherProcess(Check check)
{
    const pid_t checker = fork();
    if (checker == 0)
        _exit(check());
    int status = 0;
    return waitpid(checker, &status, 0) == checker && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr int notPermitted = 77;

/// 0 if all guarantees hold without pidfds.
int checkWithoutPidfds()
{
    if (!hidePidfds())
        return notPermitted;
    TestChild child(TestChild::endsOnTerm);
    const ProcessHandle process(child.pid());
    const bool wasThere = process.send(0) && !process.waitForEnd(20ms);
    const bool wasSignalled = process.send(SIGTERM) && child.collect() == SIGTERM;
    const bool isGone = !process.send(0) && process.waitForEnd(20ms);
    const bool spareGroups = !ProcessHandle(0).send(0) && !ProcessHandle(-1).send(0);
    TestChild second(TestChild::endsOnTerm);
    const ProcessIdentity identity = ProcessIdentity::of(second.pid()).value_or(ProcessIdentity());
    const bool sparesOthers =
        !ProcessHandle(ProcessIdentity{identity.pid, identity.startTicks + 1}).send(SIGKILL);
    const bool findsIdentity = ProcessHandle(identity).send(SIGTERM) && second.collect() == SIGTERM;
    return wasThere && wasSignalled && isGone && spareGroups && sparesOthers && findsIdentity ? 0 : 1;
}

/// 0 if without pidfds a process is told from a later one with the same id.
int checkNewcomerWithoutPidfds()
{
    TestChild child(TestChild::endsOnTerm);
    const pid_t pid = child.pid();
    if (!hidePidfds())
        return notPermitted;
    const ProcessHandle process(pid);
    if (!process.send(SIGTERM) || child.collect() != SIGTERM)
        return 1;
    const auto newcomer = TestChild::withPidLater(pid, TestChild::endsOnTerm);
    if (!newcomer)
        return notPermitted;
    const bool isReached = process.send(0) || process.send(SIGKILL) || !newcomer->isAlive();
    return !isReached && process.waitForEnd(0ms) ? 0 : 1;
}

/// 0 if a process that could not be held for lack of descriptors is not signalled.
int checkWithoutDescriptors()
{
    TestChild child(TestChild::endsOnTerm);
    rlimit all = {};
    getrlimit(RLIMIT_NOFILE, &all);
    rlimit none = all;
    none.rlim_cur = 0;
    setrlimit(RLIMIT_NOFILE, &none);
    const ProcessHandle process(child.pid());
    const bool wasSignalled = process.send(SIGKILL);
    setrlimit(RLIMIT_NOFILE, &all);
    const bool isSignalled = process.send(SIGKILL);
    return !wasSignalled && !isSignalled && child.isAlive() ? 0 : 1;
}

/// 0 if the first process of a new pid namespace is not taken for the one that the old /proc shows by that
/// id.
int checkWithProcOfAnotherNamespace()
{
    if (unshare(CLONE_NEWUSER | CLONE_NEWPID) != 0)
        return notPermitted;
    return inAnotherProcess([] {
        const auto identity = ProcessIdentity::of(getpid());
        return getpid() == 1 && identity && !ProcessHandle(*identity).send(0) ? 0 : 1;
    });
}

} // namespace

TEST(ProcessHandle, SendsSignalsToItsProcess)
{
    TestChild child(TestChild::endsOnTerm);
    const ProcessHandle process(child.pid());
    EXPECT_TRUE(process.send(0));
    EXPECT_TRUE(child.isAlive());
    EXPECT_TRUE(process.send(SIGTERM));
    EXPECT_EQ(child.collect(), SIGTERM);
    EXPECT_FALSE(process.send(0));
}

TEST(ProcessHandle, HoldsNobodyForIdsThatNameNobodyOrGroups)
{
    TestChild gone(TestChild::endsOnTerm);
    const pid_t pid = gone.pid();
    kill(pid, SIGTERM);
    gone.collect();
    for (const qint32 id : {0, -1, -getpgrp(), std::numeric_limits<qint32>::min(), pid}) {
        const ProcessHandle nobody(id);
        EXPECT_FALSE(nobody.send(0)) << id;
        EXPECT_TRUE(nobody.waitForEnd(0ms)) << id;
    }
}

TEST(ProcessHandle, NeverReachesANewcomerWithTheSameId)
{
    TestChild child(TestChild::endsOnTerm);
    const pid_t pid = child.pid();
    const ProcessHandle process(pid);
    process.send(SIGTERM);
    child.collect();

    auto newcomer = TestChild::withPid(pid, TestChild::endsOnTerm);
    if (!newcomer)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    ASSERT_TRUE(ProcessHandle(pid).send(0)) << "the id is in use again";
    EXPECT_FALSE(process.send(SIGKILL));
    EXPECT_TRUE(newcomer->isAlive());
}

TEST(ProcessHandle, HoldsTheProcessOfAnIdentityAlone)
{
    TestChild child(TestChild::endsOnTerm);
    const auto identity = ProcessIdentity::of(child.pid());
    ASSERT_TRUE(identity);
    EXPECT_TRUE(ProcessHandle(*identity).send(0));
    const ProcessHandle other(ProcessIdentity{identity->pid, identity->startTicks + 1});
    EXPECT_FALSE(other.send(SIGKILL));
    EXPECT_TRUE(other.waitForEnd(0ms));
    EXPECT_TRUE(child.isAlive());

    kill(child.pid(), SIGTERM);
    child.collect();
    const auto newcomer = TestChild::withPidLater(identity->pid, TestChild::endsOnTerm);
    if (!newcomer)
        GTEST_SKIP() << "choosing a process id needs the right to (clone3 with set_tid): " << strerror(errno);
    EXPECT_FALSE(ProcessHandle(*identity).send(SIGKILL));
    EXPECT_TRUE(ProcessHandle(*identity).waitForEnd(0ms));
    EXPECT_TRUE(newcomer->isAlive());
}

TEST(ProcessHandle, WaitsForTheEnd)
{
    TestChild child(TestChild::ignoresTerm);
    const ProcessHandle process(child.pid());
    EXPECT_FALSE(process.waitForEnd(20ms));
    process.send(SIGKILL);
    EXPECT_TRUE(process.waitForEnd(30s)) << "although nobody has collected it yet";
    EXPECT_EQ(child.collect(), SIGKILL);
}

TEST(ProcessHandle, CanBeMoved)
{
    TestChild child(TestChild::endsOnTerm);
    ProcessHandle process(child.pid());
    ProcessHandle moved(std::move(process));
    EXPECT_TRUE(moved.send(0));
    ProcessHandle assigned(0);
    assigned = std::move(moved);
    EXPECT_TRUE(assigned.send(SIGTERM));
    EXPECT_EQ(child.collect(), SIGTERM);
}

TEST(ProcessHandle, DoesWithoutPidfdsWhereTheKernelHasNone)
{
    const int status = inAnotherProcess(checkWithoutPidfds);
    if (status == notPermitted)
        GTEST_SKIP() << "system call filters are not permitted here";
    EXPECT_EQ(status, 0);
}

TEST(ProcessHandle, NeverReachesANewcomerWithoutPidfdsEither)
{
    const int status = inAnotherProcess(checkNewcomerWithoutPidfds);
    if (status == notPermitted)
        GTEST_SKIP() << "system call filters, or choosing a process id, are not permitted here";
    EXPECT_EQ(status, 0);
}

TEST(ProcessHandle, HoldsNoProcessByAnIdThatOnlyProcKnows)
{
    const int status = inAnotherProcess(checkWithProcOfAnotherNamespace);
    if (status == notPermitted)
        GTEST_SKIP() << "namespaces are not permitted here";
    EXPECT_EQ(status, 0);
}

TEST(ProcessHandle, HoldsNobodyWhereThereIsNoDescriptorToHoldHimBy)
{
    EXPECT_EQ(inAnotherProcess(checkWithoutDescriptors), 0);
}

} // namespace portolan
