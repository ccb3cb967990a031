// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>

namespace portolan {

/// A child process that executes the commands in test_process.cpp, to get properties that a test needs.
class TestProcess
{
public:
    /// Runs `program`, which is test_process or a copy of it.
    explicit TestProcess(const QString &program = TestProcess::program());
    ~TestProcess();
    Q_DISABLE_COPY_MOVE(TestProcess)

    [[nodiscard]] static QString program();

    [[nodiscard]] int pid() const { return int(m_process.processId()); }
    /// Executes a command and returns its result; throws if that fails.
    QByteArray tell(const QByteArray &command);
    /// Ends it by SIGKILL.
    void kill();

private:
    QProcess m_process;
};

} // namespace portolan
