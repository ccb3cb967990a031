#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

namespace portolan {

/// A message bus of the test's own, which ends with it.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();

    /// As in $DBUS_SESSION_BUS_ADDRESS.
    [[nodiscard]] QString address() const { return m_address; }
    /// A connection of its own, as another program would have. Open until the bus ends.
    [[nodiscard]] QDBusConnection connect();
    /// Ends the bus.
    void stop();

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

} // namespace portolan
