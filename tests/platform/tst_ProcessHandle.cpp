#include "ProcessHandle.h"
#include "TestChild.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <limits>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

using namespace std::chrono_literals;

namespace {

/// Makes pidfd_open answer as a kernel does that has none, for the rest of this process's life.
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

/// Exits with 0 if everything that is promised holds without pidfds.
[[noreturn]] void checkWithoutPidfds()
{
    if (!hidePidfds())
        _exit(77);
    TestChild child(TestChild::endsOnTerm);
    const ProcessHandle process(child.pid());
    const bool wasThere = process.send(0) && !process.waitForEnd(20ms);
    const bool wasSignalled = process.send(SIGTERM) && child.collect() == SIGTERM;
    const bool isGone = !process.send(0) && process.waitForEnd(20ms);
    const bool spareGroups = !ProcessHandle(0).send(0) && !ProcessHandle(-1).send(0);
    _exit(wasThere && wasSignalled && isGone && spareGroups ? 0 : 1);
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

TEST(ProcessHandle, DoesWithBareIdsWhereTheKernelHasNoPidfds)
{
    const pid_t checker = fork();
    if (checker == 0)
        checkWithoutPidfds();
    int status = 0;
    ASSERT_EQ(waitpid(checker, &status, 0), checker);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 77)
        GTEST_SKIP() << "system call filters are not permitted here";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
