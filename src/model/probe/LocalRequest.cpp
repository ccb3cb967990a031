// SPDX-License-Identifier: MIT
#include "LocalRequest.h"

#include <array>
#include <cerrno>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/epoll.h>

namespace portolan {

namespace {

bool isNotYetReady(int error)
{
    return error == EAGAIN || error == EINTR;
}

} // namespace

// "localhost" stands for both addresses; IPv6 is tried first, as in browsers. A refusal is immediate.
LocalRequest::LocalRequest(const RequestTarget &target, std::string text)
    : m_unsent(std::move(text))
{
    if (target.host() != RequestTarget::ipv4Host) {
        sockaddr_in6 address{};
        address.sin6_family = AF_INET6;
        address.sin6_port = htons(target.port());
        address.sin6_addr = in6addr_loopback;
        m_hasFailed = !connect(reinterpret_cast<const sockaddr *>(&address), sizeof address);
    }
    if (m_hasFailed && target.host() != RequestTarget::ipv6Host) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(target.port());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_hasFailed = !connect(reinterpret_cast<const sockaddr *>(&address), sizeof address);
    }
}

std::uint32_t LocalRequest::events() const
{
    return m_unsent.empty() ? EPOLLIN : EPOLLOUT;
}

bool LocalRequest::advance()
{
    if (m_unsent.empty())
        return receive();
    m_hasFailed = !send();
    return false;
}

// Between processes of one machine the connection is usually established when connect() returns, and the
// request can follow at once.
bool LocalRequest::connect(const sockaddr *address, socklen_t size)
{
    m_socket = FileDescriptor(::socket(address->sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    // Without IPv6 there is no such socket, or no such address.
    m_lacksResources = !m_socket.isOpen() && errno != EAFNOSUPPORT;
    if (m_lacksResources)
        return false;
    const bool isUnderWay = ::connect(m_socket.get(), address, size) == 0 || errno == EINPROGRESS;
    m_wasRefused = !isUnderWay && errno == ECONNREFUSED;
    m_lacksResources = !isUnderWay && errno == EADDRNOTAVAIL && address->sa_family == AF_INET;
    return isUnderWay && send();
}

bool LocalRequest::send()
{
    const ssize_t sent = ::send(m_socket.get(), m_unsent.data(), m_unsent.size(), MSG_NOSIGNAL);
    if (sent < 0) {
        m_wasRefused = errno == ECONNREFUSED;
        return isNotYetReady(errno);
    }
    m_unsent.erase(0, size_t(sent));
    return true;
}

bool LocalRequest::receive()
{
    std::array<char, 4096> bytes; // enough for an ordinary header section
    const ssize_t length = ::recv(m_socket.get(), bytes.data(), bytes.size(), 0);
    if (length < 0 && isNotYetReady(errno))
        return false;
    m_hasFailed =
        length <= 0 || m_response.read({bytes.data(), size_t(length)}) == ResponseHead::State::Invalid;
    return length > 0;
}

} // namespace portolan
