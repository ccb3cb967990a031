// SPDX-License-Identifier: MIT
#include "Eventually.h"
#include "LocalSocket.h"
#include "ProcessTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include <csignal>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using testing::Contains;
using testing::IsEmpty;

namespace {

std::optional<ProcessStat> statOf(pid_t pid)
{
    KernelProcessTable table;
    return table.stat(pid, table.runTime(pid));
}

/// A process that sleeps except when it is told to run.
class Sleeper
{
public:
    Sleeper()
    {
        if (pipe2(m_orders, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2");
        m_pid = fork();
        if (m_pid == 0)
            obey();
    }
    ~Sleeper()
    {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
        ::close(m_orders[0]);
        ::close(m_orders[1]);
    }
    Sleeper(const Sleeper &) = delete;
    Sleeper &operator=(const Sleeper &) = delete;

    [[nodiscard]] pid_t pid() const { return m_pid; }

    void close(int descriptor) const { order({.descriptor = descriptor}); }
    void rename(const std::string &name) const
    {
        Order naming;
        name.copy(naming.name, sizeof naming.name - 1);
        order(naming);
    }

    /// Whether it has completed the command.
    [[nodiscard]] bool sleeps() const
    {
        int unread = 1;
        return ioctl(m_orders[0], FIONREAD, &unread) == 0 && unread == 0 && statOf(m_pid)->state == 'S';
    }

private:
    struct Order
    {
        int descriptor = -1;
        char name[16] = {};
    };

    void order(const Order &order) const
    {
        ASSERT_EQ(write(m_orders[1], &order, sizeof order), ssize_t(sizeof order));
    }

    [[noreturn]] void obey() const
    {
        Order order;
        while (read(m_orders[0], &order, sizeof order) > 0) {
            if (order.descriptor >= 0)
                ::close(order.descriptor);
            if (order.name[0] != 0)
                prctl(PR_SET_NAME, order.name);
        }
        _exit(0);
    }

    int m_orders[2] = {-1, -1};
    pid_t m_pid = -1;
};

std::vector<SocketDescriptor> socketsOf(pid_t pid)
{
    std::vector<SocketDescriptor> sockets;
    KernelProcessTable().readSockets(pid, sockets);
    return sockets;
}

} // namespace

// The kernel may charge CPU time to a process with a short delay.

TEST(ProcessTable, RunTimeStandsStillWhileAProcessSleeps)
{
    const LocalSocket socket = LocalSocket::listening("127.0.0.1");
    const SocketDescriptor held{socket.descriptor(), socket.inode()};
    const Sleeper sleeper;
    std::optional<std::chrono::nanoseconds> before;
    ASSERT_TRUE(eventually([&] {
        const auto earlier = std::exchange(before, KernelProcessTable().runTime(sleeper.pid()));
        return earlier && earlier == before && sleeper.sleeps();
    }));
    EXPECT_THAT(socketsOf(sleeper.pid()), Contains(held));
    EXPECT_EQ(KernelProcessTable().runTime(sleeper.pid()), before);

    sleeper.close(socket.descriptor());
    EXPECT_TRUE(eventually([&] { return KernelProcessTable().runTime(sleeper.pid()) > before; }));
    EXPECT_TRUE(eventually([&] { return std::ranges::count(socketsOf(sleeper.pid()), held) == 0; }));
}

TEST(ProcessTable, RunTimeIsThatOfAllThreads)
{
    const auto before = KernelProcessTable().runTime(getpid());
    std::thread([] {
        for (int i = 0; i < 1000; ++i)
            (void)getppid();
    }).join();
    EXPECT_GT(KernelProcessTable().runTime(getpid()), before);
}

TEST(ProcessTable, CountsTheDescriptorsOfAProcess)
{
    const LocalSocket socket = LocalSocket::listening("127.0.0.1");
    auto sleeper = std::make_unique<Sleeper>();
    const pid_t pid = sleeper->pid();
    ASSERT_TRUE(eventually([&] { return sleeper->sleeps(); }));
    const unsigned before = KernelProcessTable().descriptorCount(pid);
    if (before == 0)
        GTEST_SKIP() << "this kernel does not count them";
    EXPECT_GE(before, 4U); // the standard ones and the socket
    sleeper->close(socket.descriptor());
    EXPECT_TRUE(eventually([&] { return KernelProcessTable().descriptorCount(pid) == before - 1; }));
    sleeper.reset();
    EXPECT_EQ(KernelProcessTable().descriptorCount(pid), 0U);
}

TEST(ProcessTable, RunTimeOfWhatIsNotThereIsAbsent)
{
    const pid_t gone = std::make_unique<Sleeper>()->pid();
    EXPECT_EQ(KernelProcessTable().runTime(gone), std::nullopt);
    EXPECT_THAT(socketsOf(gone), IsEmpty());
}

TEST(ProcessTable, KnowsWhatAProcessHasBecome)
{
    auto sleeper = std::make_unique<Sleeper>();
    const pid_t pid = sleeper->pid();
    for (int round = 0; round < 20; ++round) {
        const std::string name = "name " + std::to_string(round);
        sleeper->rename(name);
        EXPECT_TRUE(eventually([&] { return statOf(pid)->command == name; })) << name;
    }
    kill(pid, SIGKILL);
    EXPECT_TRUE(eventually([&] { return statOf(pid)->isZombie(); }));
    sleeper.reset();
    EXPECT_EQ(statOf(pid), std::nullopt);
}

} // namespace portolan
