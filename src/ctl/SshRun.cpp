// SPDX-License-Identifier: MIT
#include "SshRun.h"

#include "ChildSetup.h"
#include "DescriptorLimit.h"
#include "TerminalText.h"

#include <csignal>
#include <limits>

#include <sys/prctl.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// Limits of the buffered output, and of the output within a few seconds: ten thousand servers take less.
/// Each line counts `lineBytes` more than its length, for the work that it causes.
constexpr qint64 maxBytes = 8 << 20;
constexpr qint64 lineBytes = 64 << 10;
constexpr qint64 windowMs = 5000;
constexpr qsizetype maxErrorBytes = 4096;
constexpr int maxProblemColumns = 200;
constexpr int commandNotFound = 127; // of a shell

} // namespace

SshRun::SshRun(const QStringList &arguments, QObject *parent)
    : QObject(parent)
{
    m_silence.setSingleShot(true);
    m_silence.callOnTimeout(this, [this] { giveUp(u"does not answer"_s); });
    m_window.start();
    m_process.setStandardInputFile(QProcess::nullDevice());
    // Control-C and Control-Z must reach only this program, which ends its children itself.
    m_process.setChildProcessModifier([] {
        setsid();
        ChildSetup::takeDefaultSignals();
        DescriptorLimit::restore(std::numeric_limits<int>::max());
        prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &SshRun::readOutput);
    connect(&m_process, &QProcess::readyReadStandardError, this,
            [this] { m_error = (m_error + m_process.readAllStandardError()).right(maxErrorBytes); });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            giveUp(u"there is no ssh"_s);
    });
    connect(&m_process, &QProcess::finished, this, [this] { giveUp(problemOfExit()); });
    static const QStringList always{u"-a"_s, u"-x"_s,
                                    u"-o"_s, u"BatchMode=yes"_s,
                                    u"-o"_s, u"ConnectTimeout=10"_s,
                                    u"-o"_s, u"ServerAliveInterval=5"_s,
                                    u"-o"_s, u"ServerAliveCountMax=2"_s};
    QTimer::singleShot(0, this, [this, arguments] { m_process.start(u"ssh"_s, always + arguments); });
}

SshRun::SshRun(const QString &host, const QStringList &words, QObject *parent)
    : SshRun({u"-T"_s, u"-o"_s, u"ClearAllForwardings=yes"_s, u"--"_s, host,
              u"portolanctl "_s + words.join(u' ')},
             parent)
{}

SshRun::~SshRun()
{
    m_hasEnded = true;
    m_process.kill();
    m_process.waitForFinished(1000);
}

void SshRun::setSilenceLimit(std::chrono::milliseconds limit)
{
    m_silence.start(limit);
}

void SshRun::readOutput()
{
    if (m_window.hasExpired(windowMs)) {
        m_window.start();
        m_received = 0;
    }
    while (m_readsLines && !m_hasEnded && m_received <= maxBytes && m_process.canReadLine()) {
        const QByteArray line = m_process.readLine();
        m_received += line.size() + lineBytes;
        m_silence.start();
        Q_EMIT lineRead(line);
    }
    if (m_received + m_process.bytesAvailable() > maxBytes)
        giveUp(u"sends too much"_s);
}

void SshRun::giveUp(const QString &problem)
{
    if (std::exchange(m_hasEnded, true))
        return;
    m_silence.stop();
    m_process.kill();
    Q_EMIT ended(problem);
}

QString SshRun::problemOfExit() const
{
    if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0)
        return {};
    if (m_process.exitCode() == commandNotFound)
        return u"has no portolanctl"_s;
    // The last line contains the reason.
    QString problem = QString::fromUtf8(m_error.trimmed().split('\n').last()).trimmed();
    for (const QString &prefix : {u"portolanctl: "_s, u"ssh: "_s}) {
        if (problem.startsWith(prefix))
            problem.remove(0, prefix.size());
    }
    return problem.isEmpty() ? u"ended the connection"_s
                             : TerminalText::elided(TerminalText::harmless(problem), maxProblemColumns);
}

} // namespace portolan
