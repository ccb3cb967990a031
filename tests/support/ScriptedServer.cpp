// SPDX-License-Identifier: MIT
#include "ScriptedServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

namespace portolan {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds maxWait = std::chrono::minutes(1);

enum class Event { ready, timeout, stop };

// Waits until `events` occur on `fd` or `stop` becomes readable.
Event wait(int fd, short events, int stop, milliseconds limit = maxWait)
{
    std::array<pollfd, 2> fds{{{fd, events, 0}, {stop, POLLIN, 0}}};
    if (::poll(fds.data(), fds.size(), int(limit.count())) <= 0)
        return Event::timeout;
    return fds[1].revents ? Event::stop : Event::ready;
}

} // namespace

ScriptedServer::ScriptedServer(Script script, Address address)
    : m_script(std::move(script))
    , m_listener(::socket(address == Address::ipv4 ? AF_INET : AF_INET6,
                          SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    , m_stop(::eventfd(0, EFD_CLOEXEC))
{
    sockaddr_in ipv4{.sin_family = AF_INET, .sin_addr = {htonl(INADDR_LOOPBACK)}};
    sockaddr_in6 ipv6{.sin6_family = AF_INET6, .sin6_addr = IN6ADDR_LOOPBACK_INIT};
    const bool isIpv4 = address == Address::ipv4;
    auto *const generic = isIpv4 ? reinterpret_cast<sockaddr *>(&ipv4) : reinterpret_cast<sockaddr *>(&ipv6);
    socklen_t size = isIpv4 ? sizeof ipv4 : sizeof ipv6;
    if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, 512) != 0 ||
        ::getsockname(m_listener, generic, &size) != 0)
        return;
    m_port = ntohs(isIpv4 ? ipv4.sin_port : ipv6.sin6_port);
    m_acceptor = std::jthread([this] { acceptAll(); });
}

ScriptedServer::~ScriptedServer()
{
    ::eventfd_write(m_stop, 1);
    if (m_acceptor.joinable())
        m_acceptor.join();
    m_workers.clear();
    ::close(m_listener);
    ::close(m_stop);
}

ScriptedServer::Script ScriptedServer::answers(const QByteArray &response)
{
    return [response](Connection &connection) {
        if (!connection.readRequest().isEmpty())
            connection.send(response);
    };
}

QList<QByteArray> ScriptedServer::requests() const
{
    const std::lock_guard lock(m_mutex);
    QList<QByteArray> requests;
    for (const auto &[connection, request] : m_requests)
        requests.append(request);
    return requests;
}

QList<QByteArray> ScriptedServer::methods() const
{
    QList<QByteArray> methods;
    for (const QByteArray &request : requests())
        methods.append(request.left(request.indexOf(' ')));
    return methods;
}

void ScriptedServer::acceptAll()
{
    for (;;) {
        const Event event = wait(m_listener, POLLIN, m_stop);
        if (event == Event::stop)
            return;
        const int socket = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (socket < 0)
            continue;
        const int number = m_connections++;
        m_workers.emplace_back([this, number, socket] {
            Connection connection(*this, number, socket);
            m_script(connection);
        });
    }
}

void ScriptedServer::record(int connection, const QByteArray &request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.emplace(connection, request);
}

ScriptedServer::Connection::Connection(ScriptedServer &server, int number, int socket)
    : m_server(server)
    , m_number(number)
    , m_socket(socket)
{}

ScriptedServer::Connection::~Connection()
{
    if (m_socket >= 0)
        ::close(m_socket);
}

QByteArray ScriptedServer::Connection::readRequest()
{
    QByteArray request;
    while (!request.endsWith("\r\n\r\n")) {
        char byte = 0;
        if (wait(m_socket, POLLIN, m_server.m_stop) != Event::ready || ::recv(m_socket, &byte, 1, 0) != 1)
            return {};
        request += byte;
    }
    m_server.record(m_number, request);
    return request.left(request.indexOf(' '));
}

bool ScriptedServer::Connection::send(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        if (wait(m_socket, POLLOUT, m_server.m_stop) != Event::ready)
            return false;
        const ssize_t sent = ::send(m_socket, bytes.data(), size_t(bytes.size()), MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN)
            return false;
        bytes = bytes.sliced(std::max<ssize_t>(sent, 0));
    }
    return true;
}

bool ScriptedServer::Connection::pause(milliseconds time)
{
    const auto end = Clock::now() + time;
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (left.count() <= 0)
            return true;
        if (wait(m_socket, POLLRDHUP, m_server.m_stop, left) != Event::timeout)
            return false;
    }
}

void ScriptedServer::Connection::hang()
{
    wait(m_socket, POLLRDHUP, m_server.m_stop);
}

void ScriptedServer::Connection::reset()
{
    const linger now{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    ::close(std::exchange(m_socket, -1));
}

} // namespace portolan
