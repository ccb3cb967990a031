#pragma once

#include <QDBusConnection>
#include <QObject>

namespace portolan {

/// Tells that the session bus has gone, as it does when the session ends. Main thread only.
class BusWatcher : public QObject
{
    Q_OBJECT

public:
    /// Watches `bus`, of which nothing is told if it is not connected.
    explicit BusWatcher(QDBusConnection bus);

Q_SIGNALS:
    void disconnected();
};

} // namespace portolan
