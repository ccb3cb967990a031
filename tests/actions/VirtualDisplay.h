// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>

namespace portolan {

/// A private display server, which ends with this object.
class VirtualDisplay
{
public:
    VirtualDisplay()
    {
        m_server.start(
            QStringLiteral("Xvfb"),
            {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
             QStringLiteral("0"), QStringLiteral("640x480x24"), QStringLiteral("-nolisten"),
             // The server must not reset when its last client leaves, as another may be connecting.
             QStringLiteral("tcp"), QStringLiteral("-noreset")});
        while (m_server.state() != QProcess::NotRunning && !m_server.canReadLine()) {
            if (!m_server.waitForReadyRead(30'000))
                return;
        }
        if (const QString number = QString::fromLatin1(m_server.readLine()).trimmed(); !number.isEmpty())
            m_name = u':' + number;
    }
    ~VirtualDisplay()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(VirtualDisplay)

    /// As in $DISPLAY; empty if there is no display server.
    [[nodiscard]] QString name() const { return m_name; }

private:
    QProcess m_server;
    QString m_name;
};

} // namespace portolan
