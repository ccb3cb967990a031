// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

namespace portolan {

/// A D-Bus daemon for one test.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();

    /// In the format of $DBUS_SESSION_BUS_ADDRESS.
    [[nodiscard]] QString address() const { return m_address; }
    /// A new connection, as of another program; open until this object is destroyed.
    [[nodiscard]] QDBusConnection connect();

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

} // namespace portolan
