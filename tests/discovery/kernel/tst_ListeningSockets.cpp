// SPDX-License-Identifier: MIT
#include "ListeningSockets_p.h"
#include "LocalSocket.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <linux/netlink.h>

namespace portolan {

using testing::ElementsAre;
using testing::IsEmpty;

using Address = std::array<std::uint8_t, 16>;

static constexpr Address mapped(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d)
{
    return {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, a, b, c, d};
}

static const char head[] =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n";

TEST(ListeningSocketsTable, GivesListeningSocketsOnly)
{
    const std::string text = std::string(head) +
                             "   0: 0100007F:9669 00000000:0000 0A 00000000:00000002 00:00000000 00000000    "
                             " 0        0 48454 1 0 100 0 0 10 0\n"
                             "   1: 0100007F:BC44 FEFFFF7F:DD07 01 00000000:00000000 00:00000000 00000000    "
                             " 0        0 48460 1 0\n"
                             "   2: 00000000:0BB8 00000000:0000 0A 00000000:00000000 00:00000000 00000000  "
                             "1000        0 7 1 0 100 0 0 10 0";
    EXPECT_THAT(ListeningSockets::parseTable(text, false),
                ElementsAre(ListeningSocket{.inode = 48454, .address = mapped(127, 0, 0, 1), .port = 38505},
                            ListeningSocket{.inode = 7, .address = mapped(0, 0, 0, 0), .port = 3000}));
}

TEST(ListeningSocketsTable, ReadsIpv6Addresses)
{
    const std::string text = std::string(head) +
                             "   3: 0000000000000000FFFF00000100007F:D53F "
                             "00000000000000000000000000000000:0000 0A 00000000:00000000 "
                             "00:00000000 00000000     0        0 16010 1 0 100 0 0 10 0\n";
    EXPECT_THAT(ListeningSockets::parseTable(text, true),
                ElementsAre(ListeningSocket{.inode = 16010, .address = mapped(127, 0, 0, 1), .port = 54591}));
}

class ListeningSocketsBadLine : public testing::TestWithParam<const char *>
{};

TEST_P(ListeningSocketsBadLine, IsSkipped)
{
    EXPECT_THAT(ListeningSockets::parseTable(GetParam(), false), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ListeningSocketsBadLine,
    testing::Values("", "\n\n", "0: 0100007F:9669 00000000:0000 0A", "0: 0100007F 0:0 0A 0:0 0:0 0 0 0 5",
                    "0: 100007F:9669 0:0 0A 0:0 0:0 0 0 0 5", "0: 0100007G:9669 0:0 0A 0:0 0:0 0 0 0 5",
                    "0: 0100007F:19669 0:0 0A 0:0 0:0 0 0 0 5", "0: 0100007F:9669 0:0 0A 0:0 0:0 0 0 0 x"));

static std::optional<ListeningSocket> entryOf(const std::vector<ListeningSocket> &list, ino_t inode)
{
    const auto found = std::ranges::find(list, inode, &ListeningSocket::inode);
    return found == list.end() ? std::nullopt : std::optional(*found);
}

namespace {

// The message that ends a dump, with the kernel's status.
std::vector<char> endOfDump(int error, unsigned flags)
{
    nlmsghdr header{};
    header.nlmsg_len = sizeof header + sizeof error;
    header.nlmsg_type = NLMSG_DONE;
    header.nlmsg_flags = std::uint16_t(flags);
    std::vector<char> bytes(header.nlmsg_len);
    std::memcpy(bytes.data(), &header, sizeof header);
    std::memcpy(bytes.data() + sizeof header, &error, sizeof error);
    return bytes;
}

} // namespace

TEST(ListeningSocketsDump, IsDoneOnlyIfTheKernelCouldMakeAllOfIt)
{
    using ListeningSockets::Dump;
    using ListeningSockets::readMessages;
    std::vector<ListeningSocket> sockets;
    EXPECT_EQ(readMessages(endOfDump(0, NLM_F_MULTI), sockets), Dump::done);
    EXPECT_EQ(readMessages(endOfDump(-ENOENT, NLM_F_MULTI), sockets), Dump::failed) << "no module for TCP";
    EXPECT_EQ(readMessages(endOfDump(0, NLM_F_MULTI | NLM_F_DUMP_INTR), sockets), Dump::failed);
    EXPECT_EQ(readMessages({}, sockets), Dump::goesOn);
    EXPECT_THAT(sockets, IsEmpty());
}

TEST(ListeningSockets, BothTablesTellTheSame)
{
    const LocalSocket ipv4 = LocalSocket::listening("127.0.0.1");
    const LocalSocket anyIpv6 = LocalSocket::listening("::");
    const LocalSocket ipv6 = LocalSocket::listening("::1");
    const LocalSocket client = LocalSocket::connectedTo(ipv4);
    const LocalSocket silent = LocalSocket::bound("127.0.0.1");

    const ListeningSocket expected{
        .inode = ipv4.inode(), .address = mapped(127, 0, 0, 1), .port = ipv4.port()};
    const ListeningSocket expectedAny{.inode = anyIpv6.inode(), .port = anyIpv6.port()};
    const ListeningSocket expectedIpv6{.inode = ipv6.inode(),
                                       .address = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                       .port = ipv6.port()};
    for (const auto &list :
         {ListeningSockets::fromNetlink().value(), ListeningSockets::fromProc(), ListeningSockets::read()}) {
        EXPECT_EQ(entryOf(list, ipv4.inode()), expected);
        EXPECT_EQ(entryOf(list, anyIpv6.inode()), expectedAny);
        EXPECT_EQ(entryOf(list, ipv6.inode()), expectedIpv6);
        EXPECT_EQ(entryOf(list, client.inode()), std::nullopt);
        EXPECT_EQ(entryOf(list, silent.inode()), std::nullopt);
    }
}

TEST(ListeningSockets, AreSortedAndHeldByAProcess)
{
    const LocalSocket one = LocalSocket::listening("127.0.0.1");
    const LocalSocket two = LocalSocket::listening("127.0.0.1");
    const auto list = ListeningSockets::read();
    EXPECT_TRUE(entryOf(list, one.inode()) && entryOf(list, two.inode()));
    EXPECT_TRUE(std::ranges::is_sorted(list, std::ranges::less(), &ListeningSocket::inode));
    EXPECT_EQ(entryOf(list, 0), std::nullopt);
}

TEST(ListeningSockets, ManyFitThroughTheNetlinkBuffer)
{
    std::vector<LocalSocket> sockets;
    for (int i = 0; i < 600; ++i)
        sockets.push_back(LocalSocket::listening("127.0.0.1"));
    const auto list = ListeningSockets::fromNetlink().value();
    for (const LocalSocket &socket : sockets)
        EXPECT_TRUE(entryOf(list, socket.inode()));
}

struct HostRow
{
    const char *name;
    Address address;
    bool isAccepted;
};

class ListeningSocketHost : public testing::TestWithParam<HostRow>
{};

TEST_P(ListeningSocketHost, IsAcceptedIfAllAddressesOrTheLoopback)
{
    const ListeningSocket socket{.address = GetParam().address, .port = 3000};
    EXPECT_EQ(socket.isOnAcceptedHost(), GetParam().isAccepted);
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, ListeningSocketHost,
    testing::Values(HostRow{"any", mapped(0, 0, 0, 0), true}, HostRow{"any6", {}, true},
                    HostRow{"loopback", mapped(127, 0, 0, 1), true},
                    HostRow{"otherLoopback", mapped(127, 0, 0, 2), false},
                    HostRow{"host", mapped(192, 168, 1, 5), false},
                    HostRow{"loopback6", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, true},
                    HostRow{"compatible", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 127, 0, 0, 1}, false},
                    HostRow{"startsAsLoopback", {127, 0, 0, 1}, false},
                    HostRow{"linkLocal", {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, false}),
    [](const auto &row) { return row.param.name; });

} // namespace portolan
