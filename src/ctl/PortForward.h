// SPDX-License-Identifier: MIT
#pragma once

#include "SshRun.h"

#include <QObject>
#include <QTimer>

namespace portolan {

/// Forwards a port of this machine to one of another machine's loopback address, by ssh -L, as long as this
/// object lives. Main thread.
class PortForward : public QObject
{
    Q_OBJECT

public:
    PortForward(const QString &host, qint64 port, QObject *parent);

    [[nodiscard]] bool isReady() const { return m_isReady; }
    /// The address on this machine at which the other machine's port is available.
    [[nodiscard]] QString address() const;

Q_SIGNALS:
    void ready();
    /// The connection could not be made, or has ended. `problem`: one harmless line that says why.
    void failed(const QString &problem);

private:
    const quint16 m_localPort;
    SshRun m_run;
    QTimer m_poll;
    bool m_isReady = false;
};

} // namespace portolan
