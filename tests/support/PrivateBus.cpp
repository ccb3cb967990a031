// SPDX-License-Identifier: MIT
#include "PrivateBus.h"

#include <QUuid>

namespace portolan {

using namespace Qt::StringLiterals;

PrivateBus::PrivateBus()
{
    m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s});
    while (!m_daemon.canReadLine())
        if (!m_daemon.waitForReadyRead(10'000))
            qFatal("dbus-daemon did not start");
    m_address = QString::fromLocal8Bit(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    for (const QString &name : std::as_const(m_connections))
        QDBusConnection::disconnectFromBus(name);
    m_daemon.terminate();
    m_daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect()
{
    m_connections += QUuid::createUuid().toString();
    return QDBusConnection::connectToBus(m_address, m_connections.last());
}

} // namespace portolan
