// SPDX-License-Identifier: MIT
#include "PortForward.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The port `preferred` if it is free on this machine, else another free one.
quint16 freePort(quint16 preferred)
{
    // A browser tries both addresses of "localhost".
    QTcpServer server, other;
    const bool isTaken = !other.listen(QHostAddress::LocalHostIPv6, preferred) &&
                         other.serverError() == QAbstractSocket::AddressInUseError;
    if (isTaken || !server.listen(QHostAddress::LocalHost, preferred))
        (void)server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

bool accepts(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    // A socket whose own port happens to be the same one connects to itself.
    return socket.waitForConnected() && socket.localPort() != port;
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
