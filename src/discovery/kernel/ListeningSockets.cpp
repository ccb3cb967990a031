// SPDX-License-Identifier: MIT
#include "ListeningSockets.h"

#include "ListeningSockets_p.h"
#include "ProcFs.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <span>
#include <string>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace portolan {

bool ListeningSocket::isOnAcceptedHost() const
{
    constexpr std::uint8_t mappedPrefix[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
    constexpr std::uint8_t loopback4[] = {127, 0, 0, 1};
    constexpr std::uint8_t loopback6[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    const bool isMapped = isIpv6 && std::ranges::equal(std::span(address).first(12), mappedPrefix);
    const bool isIpv4 = !isIpv6 || isMapped;
    const auto bytes = std::span(address).subspan(isMapped ? 12 : 0, isIpv4 ? 4 : 16);
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; }) ||
           (isIpv4 ? std::ranges::equal(bytes, loopback4) : std::ranges::equal(bytes, loopback6));
}

namespace {

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
    ListeningSocket socket;
    socket.inode = message.idiag_inode;
    socket.isIpv6 = message.idiag_family == AF_INET6;
    std::memcpy(socket.address.data(), message.id.idiag_src, socket.isIpv6 ? 16 : 4);
    socket.port = ntohs(message.id.idiag_sport);
    socket.pending = message.idiag_rqueue;
    return socket;
}

/// Whether the message that ends a dump says that it is whole: a kernel that lacks the module for it sends an
/// error there.
bool isWhole(const nlmsghdr &header, std::span<const char> received)
{
    int error = 0;
    if (header.nlmsg_len >= sizeof header + sizeof error && received.size() >= sizeof header + sizeof error)
        std::memcpy(&error, received.data() + sizeof header, sizeof error);
    return error >= 0;
}

} // namespace

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

/// The whole of `text` as a number in base 16 or 10.
template <typename Number>
bool parse(std::string_view text, Number &number, int base)
{
    const char *end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && last == end;
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

/// Addresses are printed as words of the machine's own byte order.
bool parseAddress(std::string_view text, ListeningSocket &socket)
{
    const size_t wordCount = socket.isIpv6 ? 4 : 1;
    if (text.size() != 8 * wordCount)
        return false;
    for (size_t i = 0; i < wordCount; ++i) {
        std::uint32_t word = 0;
        if (!parse(text.substr(8 * i, 8), word, 16))
            return false;
        std::memcpy(socket.address.data() + 4 * i, &word, 4);
    }
    return true;
}

std::optional<ListeningSocket> parseLine(std::string_view line, bool isIpv6)
{
    enum Column { number, local, remote, state, queues, timer, retransmits, uid, timeout, inode };
    const auto columns = words(line);
    unsigned lineState = 0;
    if (columns.size() <= inode || !parse(columns[state], lineState, 16) || lineState != listenState)
        return std::nullopt;

    ListeningSocket socket{.isIpv6 = isIpv6};
    const size_t colon = columns[local].find(':');
    const size_t queueColon = columns[queues].find(':');
    if (colon == std::string_view::npos || queueColon == std::string_view::npos ||
        !parseAddress(columns[local].substr(0, colon), socket) ||
        !parse(columns[local].substr(colon + 1), socket.port, 16) ||
        !parse(columns[queues].substr(queueColon + 1), socket.pending, 16) ||
        !parse(columns[inode], socket.inode, 10))
        return std::nullopt;
    return socket;
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

std::optional<std::vector<ListeningSocket>> ListeningSockets::fromProc()
{
    const auto ipv4 = ProcFs::readAll("/proc/net/tcp");
    if (!ipv4)
        return std::nullopt;
    auto sockets = parseTable(*ipv4, false);
    // A kernel without IPv6 has no such table.
    if (const auto ipv6 = ProcFs::readAll("/proc/net/tcp6")) {
        const auto more = parseTable(*ipv6, true);
        sockets.insert(sockets.end(), more.begin(), more.end());
    }
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

std::optional<std::vector<ListeningSocket>> ListeningSockets::read()
{
    auto sockets = fromNetlink();
    if (!sockets)
        sockets = fromProc();
    if (!sockets)
        return std::nullopt;
    // Without an inode it is no process's; twice when the table changed while it was read.
    std::erase_if(*sockets, [](const ListeningSocket &socket) { return socket.inode == 0; });
    std::ranges::sort(*sockets, {}, &ListeningSocket::inode);
    // Not std::ranges, whose subranges clang 14 does not compile with this standard library.
    const auto haveOneInode = [](const ListeningSocket &a, const ListeningSocket &b) {
        return a.inode == b.inode;
    };
    sockets->erase(std::unique(sockets->begin(), sockets->end(), haveOneInode), sockets->end());
    return sockets;
}

} // namespace portolan
