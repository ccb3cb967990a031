#include "LocalSocket.h"
#include "ProcessTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::Contains;
using testing::IsEmpty;

namespace {

/// A process that sleeps, but for when it is told to run.
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

    /// Has it close the descriptor, and returns when it sleeps again.
    void close(int descriptor) const
    {
        ASSERT_EQ(write(m_orders[1], &descriptor, sizeof descriptor), ssize_t(sizeof descriptor));
        awaitSleep();
    }

    void awaitSleep() const
    {
        int unread = 1;
        while (unread > 0 || KernelProcessTable().stat(m_pid)->state != 'S') {
            ASSERT_EQ(ioctl(m_orders[0], FIONREAD, &unread), 0);
            std::this_thread::yield();
        }
    }

private:
    [[noreturn]] void obey() const
    {
        int descriptor = -1;
        while (read(m_orders[0], &descriptor, sizeof descriptor) > 0)
            ::close(descriptor);
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

TEST(ProcessTable, RunTimeStandsStillWhileAProcessSleeps)
{
    const LocalSocket socket = LocalSocket::listening("127.0.0.1");
    const Sleeper sleeper;
    sleeper.awaitSleep();
    const auto before = KernelProcessTable().runTime(sleeper.pid());
    ASSERT_TRUE(before);
    EXPECT_THAT(socketsOf(sleeper.pid()), Contains(SocketDescriptor{socket.descriptor(), socket.inode()}));
    EXPECT_EQ(KernelProcessTable().runTime(sleeper.pid()), before);

    sleeper.close(socket.descriptor());
    EXPECT_GT(KernelProcessTable().runTime(sleeper.pid()), before);
    EXPECT_THAT(socketsOf(sleeper.pid()),
                testing::Not(Contains(SocketDescriptor{socket.descriptor(), socket.inode()})));
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

TEST(ProcessTable, RunTimeOfWhatIsNotThereIsAbsent)
{
    const pid_t gone = std::make_unique<Sleeper>()->pid();
    EXPECT_EQ(KernelProcessTable().runTime(gone), std::nullopt);
    EXPECT_THAT(socketsOf(gone), IsEmpty());
}

TEST(ProcessTable, FindsSocketsBehindGapsWhileOthersComeAndGo)
{
    const LocalSocket socket = LocalSocket::listening("127.0.0.1");
    const int far = fcntl(socket.descriptor(), F_DUPFD_CLOEXEC, 600);
    ASSERT_GE(far, 600);
    std::atomic<bool> done = false;
    std::thread bustle([&done] {
        while (!done) {
            const int first = dup(0);
            const int second = dup(0);
            close(first);
            close(second);
        }
    });
    for (int round = 0; round < 200; ++round) {
        const auto sockets = socketsOf(getpid());
        EXPECT_THAT(sockets, Contains(SocketDescriptor{socket.descriptor(), socket.inode()}));
        EXPECT_THAT(sockets, Contains(SocketDescriptor{far, socket.inode()}));
    }
    done = true;
    bustle.join();
    close(far);
}
