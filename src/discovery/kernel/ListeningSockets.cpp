// SPDX-License-Identifier: MIT
#include "ListeningSockets.h"

#include "ListeningSockets_p.h"
#include "ProcFs.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace portolan {

namespace {

using Address = std::array<std::uint8_t, 16>;

constexpr Address mapped(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d)
{
    return {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, a, b, c, d};
}

constexpr std::array acceptedHosts{
    Address{},
    Address{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
    mapped(0, 0, 0, 0),
    mapped(127, 0, 0, 1),
};

/// The address in the 4 or 16 bytes at `bytes`, which are in network byte order.
Address addressOf(const void *bytes, bool isIpv6)
{
    Address address = mapped(0, 0, 0, 0);
    if (isIpv6)
        std::memcpy(address.data(), bytes, 16);
    else
        std::memcpy(address.data() + 12, bytes, 4);
    return address;
}

constexpr unsigned listenState = TCP_LISTEN;

struct DumpRequest
{
    nlmsghdr header = {};
    inet_diag_req_v2 query = {};
};

bool askForListeners(int socket, int family)
{
    DumpRequest request;
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.query.sdiag_family = std::uint8_t(family);
    request.query.sdiag_protocol = IPPROTO_TCP;
    request.query.idiag_states = 1U << listenState;
    return send(socket, &request, sizeof request, 0) == ssize_t(sizeof request);
}

ListeningSocket fromMessage(const inet_diag_msg &message)
{
    return {.inode = message.idiag_inode,
            .address = addressOf(message.id.idiag_src, message.idiag_family == AF_INET6),
            .port = ntohs(message.id.idiag_sport)};
}

/// Whether the message that ends a dump reports success: a kernel without the module for it reports an error
/// there.
bool isWhole(const nlmsghdr &header, std::span<const char> received)
{
    int error = 0;
    if (header.nlmsg_len >= sizeof header + sizeof error && received.size() >= sizeof header + sizeof error)
        std::memcpy(&error, received.data() + sizeof header, sizeof error);
    return error >= 0;
}

} // namespace

bool ListeningSocket::isOnAcceptedHost() const
{
    return std::ranges::find(acceptedHosts, address) != acceptedHosts.end();
}

ListeningSockets::Dump ListeningSockets::readMessages(std::span<const char> received,
                                                      std::vector<ListeningSocket> &sockets)
{
    nlmsghdr header;
    while (received.size() >= sizeof header) {
        std::memcpy(&header, received.data(), sizeof header);
        if (header.nlmsg_flags & NLM_F_DUMP_INTR)
            return Dump::failed;
        if (header.nlmsg_type == NLMSG_DONE)
            return isWhole(header, received) ? Dump::done : Dump::failed;
        inet_diag_msg message;
        if (header.nlmsg_type != SOCK_DIAG_BY_FAMILY || header.nlmsg_len > received.size() ||
            header.nlmsg_len < sizeof header + sizeof message)
            return Dump::failed;
        std::memcpy(&message, received.data() + sizeof header, sizeof message);
        sockets.push_back(fromMessage(message));
        received = received.subspan(std::min<size_t>(NLMSG_ALIGN(header.nlmsg_len), received.size()));
    }
    return Dump::goesOn;
}

namespace {

using ListeningSockets::Dump;

bool receiveListeners(int socket, std::vector<ListeningSocket> &sockets)
{
    char buffer[32 * 1024];
    for (;;) {
        const ssize_t length = recv(socket, buffer, sizeof buffer, 0);
        if (length <= 0)
            return false;
        const Dump dump = ListeningSockets::readMessages(std::span(buffer).first(size_t(length)), sockets);
        if (dump != Dump::goesOn)
            return dump == Dump::done;
    }
}

std::vector<std::string_view> words(std::string_view line)
{
    std::vector<std::string_view> words;
    for (size_t at = 0; (at = line.find_first_not_of(' ', at)) != std::string_view::npos;) {
        const size_t end = std::min(line.find(' ', at), line.size());
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

/// The kernel prints addresses as words in host byte order.
std::optional<Address> parseAddress(std::string_view text, bool isIpv6)
{
    std::array<std::uint32_t, 4> words{};
    const size_t wordCount = isIpv6 ? 4 : 1;
    if (text.size() != 8 * wordCount)
        return std::nullopt;
    for (size_t i = 0; i < wordCount; ++i) {
        const auto word = ProcFs::number<std::uint32_t>(text.substr(8 * i, 8), 16);
        if (!word)
            return std::nullopt;
        words[i] = *word;
    }
    return addressOf(words.data(), isIpv6);
}

std::optional<ListeningSocket> parseLine(std::string_view line, bool isIpv6)
{
    enum Column { number, local, remote, state, queues, timer, retransmits, uid, timeout, inode };
    const auto columns = words(line);
    if (columns.size() <= inode || ProcFs::number<unsigned>(columns[state], 16) != listenState)
        return std::nullopt;
    const size_t colon = std::min(columns[local].find(':'), columns[local].size() - 1);
    const auto address = parseAddress(columns[local].substr(0, colon), isIpv6);
    const auto port = ProcFs::number<std::uint16_t>(columns[local].substr(colon + 1), 16);
    const auto socketInode = ProcFs::number<ino_t>(columns[inode]);
    if (!address || !port || !socketInode)
        return std::nullopt;
    return ListeningSocket{*socketInode, *address, *port};
}

} // namespace

std::optional<std::vector<ListeningSocket>> ListeningSockets::fromNetlink()
{
    const FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG));
    if (!socket.isOpen())
        return std::nullopt;
    std::vector<ListeningSocket> sockets;
    for (const int family : {AF_INET, AF_INET6}) {
        if (!askForListeners(socket.get(), family) || !receiveListeners(socket.get(), sockets))
            return std::nullopt;
    }
    return sockets;
}

std::vector<ListeningSocket> ListeningSockets::fromProc()
{
    auto sockets = parseTable(ProcFs::readAll("/proc/net/tcp"), false);
    const auto ipv6 = parseTable(ProcFs::readAll("/proc/net/tcp6"), true);
    sockets.insert(sockets.end(), ipv6.begin(), ipv6.end());
    return sockets;
}

std::vector<ListeningSocket> ListeningSockets::parseTable(std::string_view text, bool isIpv6)
{
    std::vector<ListeningSocket> sockets;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (const auto socket = parseLine(line, isIpv6))
            sockets.push_back(*socket);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return sockets;
}

std::vector<ListeningSocket> ListeningSockets::read()
{
    const auto answer = fromNetlink();
    std::vector<ListeningSocket> sockets = answer ? *answer : fromProc();
    // No process holds a socket without an inode. Duplicates occur if the table changed while it was read.
    std::erase_if(sockets, [](const ListeningSocket &socket) { return socket.inode == 0; });
    std::ranges::sort(sockets, {}, &ListeningSocket::inode);
    // Not std::ranges, whose subranges clang 14 does not compile with this standard library.
    const auto haveOneInode = [](const ListeningSocket &a, const ListeningSocket &b) {
        return a.inode == b.inode;
    };
    sockets.erase(std::unique(sockets.begin(), sockets.end(), haveOneInode), sockets.end());
    return sockets;
}

} // namespace portolan
