#include "OddProcess.h"

#include <stdexcept>

namespace portolan {

using namespace Qt::StringLiterals;

OddProcess::OddProcess(const QString &program)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, QStringList());
    if (!m_process.waitForStarted())
        throw std::runtime_error("odd_process does not start");
}

QString OddProcess::program()
{
    return QStringLiteral(PORTOLAN_ODD_PROCESS);
}

OddProcess::~OddProcess()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished())
        kill();
}

QByteArray OddProcess::tell(const QByteArray &order)
{
    m_process.write(order + '\n');
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead())
            throw std::runtime_error("odd_process does not answer to " + order.toStdString());
    }
    const QByteArray answer = m_process.readLine().trimmed();
    return answer.mid(answer.indexOf(' ') + 1);
}

void OddProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

} // namespace portolan
