#include "LocalRequest.h"

#include <array>
#include <cerrno>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/epoll.h>

namespace portolan {

namespace {

std::string text(Probe::Method method, const RequestTarget &target)
{
    std::string request;
    request.reserve(128);
    request += method == Probe::Method::head ? "HEAD " : "GET ";
    request += target.path();
    request += " HTTP/1.1\r\nHost: ";
    request += target.hostAndPort();
    request += "\r\nUser-Agent: Portolan\r\nAccept: */*\r\n\r\n";
    return request;
}

bool isNotYetReady(int error)
{
    return error == EAGAIN || error == EINTR;
}

} // namespace

// The name stands for either address, IPv6 first, as for browsers. A refusal comes at once.
LocalRequest::LocalRequest(Probe::Method method, const RequestTarget &target)
    : m_unsent(text(method, target))
{
    if (target.host() != RequestTarget::ipv4Host) {
        sockaddr_in6 address{};
        address.sin6_family = AF_INET6;
        address.sin6_port = htons(target.port());
        address.sin6_addr = in6addr_loopback;
        connect(reinterpret_cast<const sockaddr *>(&address), sizeof address);
    }
    if (m_state == RequestState::failed && target.host() != RequestTarget::ipv6Host) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(target.port());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        connect(reinterpret_cast<const sockaddr *>(&address), sizeof address);
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
    send();
    return false;
}

// Another process of this machine is asked: mostly the connection stands before connect() has returned, and
// the request can follow without a wait.
void LocalRequest::connect(const sockaddr *address, socklen_t size)
{
    m_socket = FileDescriptor(::socket(address->sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (::connect(m_socket.get(), address, size) != 0 && errno != EINPROGRESS)
        return;
    m_state = RequestState::underWay;
    send();
}

void LocalRequest::send()
{
    const ssize_t sent = ::send(m_socket.get(), m_unsent.data(), m_unsent.size(), MSG_NOSIGNAL);
    if (sent >= 0)
        m_unsent.erase(0, size_t(sent));
    else if (!isNotYetReady(errno))
        m_state = RequestState::failed;
}

bool LocalRequest::receive()
{
    std::array<char, 4096> bytes; // an ordinary header section at once
    const ssize_t length = ::recv(m_socket.get(), bytes.data(), bytes.size(), 0);
    if (length < 0 && isNotYetReady(errno))
        return false;
    const auto head =
        length > 0 ? m_response.read({bytes.data(), size_t(length)}) : ResponseHead::State::invalid;
    if (head == ResponseHead::State::complete)
        m_state = RequestState::answered;
    else if (head == ResponseHead::State::invalid)
        m_state = RequestState::failed;
    return length > 0;
}

} // namespace portolan
