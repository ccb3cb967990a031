// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QList>
#include <QProcess>
#include <QStringList>

namespace portolan {

/// A server in a process of its own, run by an interpreter. Killed at the end of the scope.
class TestServer
{
public:
    /// Runs `command` in `folder` and waits for its first line: the port and other numbers of interest.
    TestServer(const QStringList &command, const QString &folder)
    {
        m_process.setWorkingDirectory(folder);
        m_process.start(command.first(), command.sliced(1));
        for (const QByteArray &number : nextLine().split(' '))
            m_numbers.append(number.toInt());
    }
    ~TestServer()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(TestServer)

    /// The command that runs a script of Python's; preferably a Python that every user may run.
    [[nodiscard]] static QStringList python(const QString &script)
    {
        const QString system = QStringLiteral("/usr/bin/python3");
        return {QFile::exists(system) ? system : QStringLiteral("python3"), QStringLiteral("-c"), script};
    }

    [[nodiscard]] qint64 pid() const { return m_process.processId(); }
    [[nodiscard]] QString port() const { return QString::number(m_numbers.value(0)); }
    [[nodiscard]] int number(qsizetype index) const { return m_numbers.value(index); }
    [[nodiscard]] QString id() const { return QString::number(pid()) + QLatin1Char('-') + port(); }

    [[nodiscard]] bool isRunning()
    {
        m_process.waitForFinished(0);
        return m_process.state() == QProcess::Running;
    }
    /// Waits for its end; returns the signal that ended it, 0 if it exited, -1 if it still runs.
    [[nodiscard]] int endedBy()
    {
        if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished())
            return -1;
        return m_process.exitStatus() == QProcess::CrashExit ? m_process.exitCode() : 0;
    }
    /// Its output after the first line. To be called after its end.
    [[nodiscard]] QByteArray output() { return m_process.readAllStandardOutput(); }

private:
    [[nodiscard]] QByteArray nextLine()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(60'000)) {
        }
        return m_process.readLine().trimmed();
    }

    QProcess m_process;
    QList<int> m_numbers;
};

} // namespace portolan
