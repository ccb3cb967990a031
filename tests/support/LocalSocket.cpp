// SPDX-License-Identifier: MIT
#include "LocalSocket.h"

#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace portolan {

namespace {

void check(int result, const char *what)
{
    if (result < 0)
        throw std::runtime_error(what);
}

} // namespace

LocalSocket::LocalSocket(int family)
    : m_descriptor(socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    check(m_descriptor, "socket");
}

LocalSocket::LocalSocket(LocalSocket &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{}

LocalSocket::~LocalSocket()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

LocalSocket LocalSocket::bound(const std::string &address)
{
    sockaddr_in6 ipv6{.sin6_family = AF_INET6};
    if (inet_pton(AF_INET6, address.c_str(), &ipv6.sin6_addr) == 1) {
        LocalSocket local(AF_INET6);
        check(bind(local.m_descriptor, reinterpret_cast<const sockaddr *>(&ipv6), sizeof ipv6), "bind");
        return local;
    }
    sockaddr_in ipv4{.sin_family = AF_INET};
    check(inet_pton(AF_INET, address.c_str(), &ipv4.sin_addr) - 1, "address");
    LocalSocket local(AF_INET);
    check(bind(local.m_descriptor, reinterpret_cast<const sockaddr *>(&ipv4), sizeof ipv4), "bind");
    return local;
}

LocalSocket LocalSocket::listening(const std::string &address)
{
    LocalSocket local = bound(address);
    constexpr int backlog = 512; // a test may never accept its connections
    check(listen(local.m_descriptor, backlog), "listen");
    return local;
}

LocalSocket LocalSocket::connectedTo(const LocalSocket &server)
{
    sockaddr_storage address;
    socklen_t length = sizeof address;
    check(getsockname(server.m_descriptor, reinterpret_cast<sockaddr *>(&address), &length), "getsockname");
    LocalSocket client(address.ss_family);
    check(connect(client.m_descriptor, reinterpret_cast<const sockaddr *>(&address), length), "connect");
    return client;
}

ino_t LocalSocket::inode() const
{
    struct stat status;
    check(fstat(m_descriptor, &status), "fstat");
    return status.st_ino;
}

std::uint16_t LocalSocket::port() const
{
    sockaddr_in6 address;
    socklen_t length = sizeof address;
    check(getsockname(m_descriptor, reinterpret_cast<sockaddr *>(&address), &length), "getsockname");
    return ntohs(address.sin6_port); // at the same offset as in sockaddr_in
}

} // namespace portolan
