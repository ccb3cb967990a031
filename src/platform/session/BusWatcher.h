// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>

namespace portolan {

/// Reports that the connection to the session bus is lost, as at the end of the session. Main thread only.
class BusWatcher : public QObject
{
    Q_OBJECT

public:
    /// Watches `bus`. If it is not connected, nothing is ever emitted.
    explicit BusWatcher(QDBusConnection bus);

Q_SIGNALS:
    void disconnected();
};

} // namespace portolan
