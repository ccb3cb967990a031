// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>

namespace portolan {

/// A display of the test's own, which ends with it.
class VirtualDisplay
{
public:
    VirtualDisplay()
    {
        m_server.start(
            QStringLiteral("Xvfb"),
            {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
             QStringLiteral("0"), QStringLiteral("640x480x24"), QStringLiteral("-nolisten"),
             // A program that starts while the last one leaves must not meet a server that starts anew.
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

    /// As in $DISPLAY; empty if there is no display server to be had.
    [[nodiscard]] QString name() const { return m_name; }

private:
    QProcess m_server;
    QString m_name;
};

} // namespace portolan
