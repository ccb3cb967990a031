// SPDX-License-Identifier: MIT
#include "TestProcess.h"

#include <stdexcept>

namespace portolan {

using namespace Qt::StringLiterals;

TestProcess::TestProcess(const QString &program)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, QStringList());
    if (!m_process.waitForStarted())
        throw std::runtime_error("test_process does not start");
}

QString TestProcess::program()
{
    return QStringLiteral(PORTOLAN_TEST_PROCESS);
}

TestProcess::~TestProcess()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished())
        kill();
}

QByteArray TestProcess::tell(const QByteArray &command)
{
    m_process.write(command + '\n');
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead())
            throw std::runtime_error("test_process does not answer to " + command.toStdString());
    }
    const QByteArray answer = m_process.readLine().trimmed();
    return answer.mid(answer.indexOf(' ') + 1);
}

void TestProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

} // namespace portolan
