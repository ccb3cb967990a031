// SPDX-License-Identifier: MIT
#include "LocalSocket.h"
#include "ProcFs.h"
#include "ProcessTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stop_token>
#include <thread>
#include <vector>

#include <climits>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace portolan {

using testing::Contains;

namespace {

/// A listening socket of this process that is open twice: at a low number and after a gap.
class SocketBehindAGap
{
public:
    SocketBehindAGap()
        : m_far(fcntl(m_socket.descriptor(), F_DUPFD_CLOEXEC, 600))
    {}
    ~SocketBehindAGap() { close(m_far); }
    SocketBehindAGap(const SocketBehindAGap &) = delete;
    SocketBehindAGap &operator=(const SocketBehindAGap &) = delete;

    [[nodiscard]] SocketDescriptor nearOne() const { return {m_socket.descriptor(), m_socket.inode()}; }
    [[nodiscard]] SocketDescriptor farOne() const { return {m_far, m_socket.inode()}; }

private:
    LocalSocket m_socket = LocalSocket::listening("127.0.0.1");
    int m_far;
};

std::vector<SocketDescriptor> ownSockets()
{
    std::vector<SocketDescriptor> sockets;
    KernelProcessTable().readSockets(getpid(), sockets);
    return sockets;
}

} // namespace

TEST(Descriptors, FindsTheSameHoweverManyAreListed)
{
    const SocketBehindAGap socket;
    ProcFs::Descriptors all(getpid());
    std::vector<SocketDescriptor> listed;
    KernelProcessTable::readSockets(all, 0, listed); // as on kernels that do not tell how many there are
    EXPECT_THAT(listed, Contains(socket.nearOne()));
    EXPECT_THAT(listed, Contains(socket.farOne()));
    for (const unsigned unlisted : {1U, 5U, 599U, unsigned(socket.farOne().number), 1000U}) {
        ProcFs::Descriptors descriptors(getpid());
        std::vector<SocketDescriptor> found;
        KernelProcessTable::readSockets(descriptors, unlisted, found);
        EXPECT_EQ(found, listed) << unlisted;
    }
}

TEST(Descriptors, CountsDescriptorsWhereTheKernelDoes)
{
    const SocketBehindAGap socket;
    ProcFs::Descriptors descriptors(getpid());
    const unsigned count = descriptors.count();
    unsigned listed = 0;
    while (descriptors.next())
        ++listed;
    EXPECT_TRUE(count == 0 || count == listed) << count << " of " << listed;
    EXPECT_EQ(ProcFs::Descriptors(INT_MAX).count(), 0U);
}

// A process that waits in accept() has a number reserved that is no descriptor yet.
TEST(Descriptors, FindsTheSocketOfAServerThatWaits)
{
    const LocalSocket socket = LocalSocket::listening("127.0.0.1");
    std::jthread server([&socket] { close(accept(socket.descriptor(), nullptr, nullptr)); });
    for (int round = 0; round < 50; ++round)
        EXPECT_THAT(ownSockets(), Contains(SocketDescriptor{socket.descriptor(), socket.inode()}));
    const LocalSocket client = LocalSocket::connectedTo(socket);
    server.join();
}

TEST(Descriptors, FindsSocketsWhileOtherDescriptorsComeAndGo)
{
    const SocketBehindAGap socket;
    std::jthread bustle([](const std::stop_token &stop) {
        while (!stop.stop_requested()) {
            const int first = dup(0);
            const int second = dup(0);
            close(first);
            close(second);
        }
    });
    for (int round = 0; round < 500; ++round) {
        const auto sockets = ownSockets();
        EXPECT_THAT(sockets, Contains(socket.nearOne()));
        EXPECT_THAT(sockets, Contains(socket.farOne()));
    }
}

} // namespace portolan
