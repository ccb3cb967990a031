// SPDX-License-Identifier: MIT
#pragma once

#include "SshRun.h"

#include <QObject>
#include <QTimer>

namespace portolan {

/// A port of this machine that leads to one of another machine's loopback address, by ssh -L, for as long as
/// this object lives. Main thread.
class PortForward : public QObject
{
    Q_OBJECT

public:
    PortForward(const QString &host, qint64 port, QObject *parent);

    [[nodiscard]] bool isReady() const { return m_isReady; }
    /// Where the other machine's port is on this one.
    [[nodiscard]] QString address() const;

Q_SIGNALS:
    void ready();
    /// One harmless line says why it cannot be had, or no more.
    void failed(const QString &problem);

private:
    const quint16 m_localPort;
    SshRun m_run;
    QTimer m_poll;
    bool m_isReady = false;
};

} // namespace portolan
