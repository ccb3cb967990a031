// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "HealthChecker.h"
#include "Output.h"
#include "ProgressLine.h"
#include "SshRun.h"
#include "TerminalText.h"
#include "TerminationSignals.h"

#include <QEventLoop>
#include <QFuture>
#include <QTimer>

#include <chrono>
#include <csignal>

#include <poll.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds probeInterval = 200ms;

/// How often to check whether standard output still has a reader.
constexpr std::chrono::milliseconds readerInterval = 1s;

/// Whether standard output is a connection whose other end is closed, as after the end of the ssh that it
/// leads to.
bool isReaderGone()
{
    pollfd output{.fd = STDOUT_FILENO};
    return poll(&output, 1, 0) > 0 && output.revents & (POLLERR | POLLHUP);
}

QString portsText(const QList<qint64> &ports)
{
    QStringList texts;
    for (const qint64 port : ports)
        texts.append(QString::number(port));
    const QString last = texts.takeLast();
    return texts.isEmpty() ? u"port "_s + last : u"ports %1 and %2"_s.arg(texts.join(u", "_s), last);
}

/// The ports that do not answer yet, probed until they do.
class Waiting
{
public:
    Waiting(const QList<ServiceOperand> &operands, QEventLoop &loop)
        : m_loop(loop)
    {
        for (const ServiceOperand &operand : operands) {
            if (!m_ports.contains(operand.port))
                m_ports.append(operand.port);
        }
        for (const qint64 port : QList<qint64>(m_ports))
            probe(port);
        showProgress();
    }

    void printError()
    {
        m_progress.erase();
        Output::printError(portsText(m_ports) +
                           (m_ports.size() == 1 ? u" does not answer"_s : u" do not answer"_s));
    }

private:
    void probe(qint64 port)
    {
        m_checker.check(port).then(&m_context, [this, port](Health health) {
            if (!health.isHealthy())
                return QTimer::singleShot(probeInterval, Qt::PreciseTimer, &m_context,
                                          [this, port] { probe(port); });
            m_ports.removeOne(port);
            if (m_ports.isEmpty())
                return m_loop.quit();
            showProgress();
        });
    }

    void showProgress() { m_progress.setText(u"Waiting for %1…"_s.arg(portsText(m_ports))); }

    QEventLoop &m_loop;
    QList<qint64> m_ports;
    ProgressLine m_progress;
    QObject m_context;
    HealthChecker m_checker;
};

int waitHere(const CommandLine &line, QEventLoop &loop)
{
    Waiting waiting(line.operands, loop);
    QTimer reader;
    reader.callOnTimeout(&loop, [&] {
        if (isReaderGone())
            loop.exit(ExitStatus::endedBy(SIGPIPE));
    });
    reader.start(readerInterval);
    if (line.timeout)
        QTimer::singleShot(*line.timeout, Qt::PreciseTimer, &loop, [&] { loop.exit(ExitStatus::failure); });
    const int status = loop.exec();
    if (status == ExitStatus::failure)
        waiting.printError();
    return status;
}

// Runs `portolanctl wait` on each machine.
int waitOnHosts(const CommandLine &line, QEventLoop &loop)
{
    QStringList words{u"wait"_s};
    for (const ServiceOperand &operand : line.operands)
        words.append(QString::number(operand.port));
    if (line.timeout)
        words += {u"--timeout"_s, QString::number(double(line.timeout->count()) / 1000)};
    ProgressLine progress;
    QObject runs;
    int status = ExitStatus::success;
    qsizetype answered = 0;
    const auto showProgress = [&] {
        progress.setText(u"Waiting for the machines… %1 of %2"_s.arg(answered).arg(line.hosts.size()));
    };
    for (const QString &host : line.hosts) {
        auto *run = new SshRun(host, words, &runs);
        QObject::connect(run, &SshRun::ended, &runs, [&, host](const QString &problem) {
            if (!problem.isEmpty()) {
                status = ExitStatus::failure;
                progress.erase();
                Output::printError(TerminalText::harmless(host) + u": "_s + problem);
            }
            if (++answered == line.hosts.size())
                loop.quit();
            showProgress();
        });
    }
    showProgress();
    const int ended = loop.exec();
    return ended ? ended : status;
}

} // namespace

int Commands::wait(const CommandLine &line)
{
    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop,
                     [&](int signal) { loop.exit(ExitStatus::endedBy(signal)); });
    return line.hosts.isEmpty() ? waitHere(line, loop) : waitOnHosts(line, loop);
}

} // namespace portolan
