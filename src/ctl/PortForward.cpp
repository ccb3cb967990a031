// SPDX-License-Identifier: MIT
#include "PortForward.h"

#include "FileDescriptor.h"

#include <chrono>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

sockaddr_in loopback(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

FileDescriptor openSocket()
{
    return FileDescriptor(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

/// The same port as there if it is free here, else another that is.
quint16 freePort(quint16 preferred)
{
    for (const quint16 port : {preferred, quint16(0)}) {
        const FileDescriptor socket = openSocket();
        sockaddr_in address = loopback(port);
        socklen_t size = sizeof address;
        auto *generic = reinterpret_cast<sockaddr *>(&address);
        if (bind(socket.get(), generic, size) == 0 && getsockname(socket.get(), generic, &size) == 0)
            return ntohs(address.sin_port);
    }
    return 0;
}

bool accepts(quint16 port)
{
    const FileDescriptor socket = openSocket();
    sockaddr_in address = loopback(port);
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    // A socket that gets the very port as its own connects to itself.
    return connect(socket.get(), generic, size) == 0 && getsockname(socket.get(), generic, &size) == 0 &&
           ntohs(address.sin_port) != port;
}

} // namespace

PortForward::PortForward(const QString &host, qint64 port, QObject *parent)
    : QObject(parent)
    , m_localPort(freePort(quint16(port)))
    , m_run({u"-N"_s, u"-o"_s, u"ExitOnForwardFailure=yes"_s, u"-L"_s,
             u"127.0.0.1:%1:localhost:%2"_s.arg(m_localPort).arg(port), u"--"_s, host},
            nullptr)
{
    connect(&m_run, &SshRun::ended, this, [this](const QString &problem) {
        m_poll.stop();
        Q_EMIT failed(problem.isEmpty() ? u"ended the connection"_s : problem);
    });
    m_poll.callOnTimeout(this, [this] {
        if (!accepts(m_localPort))
            return;
        m_poll.stop();
        m_isReady = true;
        Q_EMIT ready();
    });
    m_poll.start(100ms);
}

QString PortForward::address() const
{
    return u"http://localhost:%1"_s.arg(m_localPort);
}

} // namespace portolan
