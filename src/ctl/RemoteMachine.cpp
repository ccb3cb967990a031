// SPDX-License-Identifier: MIT
#include "RemoteMachine.h"

#include "ServiceJson.h"
#include "TerminalText.h"

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A machine that sends nothing for so long counts as not answering. A scan with its probes takes a fraction
/// of that; connecting to a loaded machine can take longer.
constexpr std::chrono::milliseconds silenceLimit = 30s;
constexpr std::chrono::milliseconds firstRetryDelay = 1s;
constexpr std::chrono::milliseconds lastRetryDelay = 30s;

constexpr QStringView noList = u"sends what is no list of servers";

} // namespace

RemoteMachine::RemoteMachine(const QString &host, bool probes)
    : m_host(host)
    , m_probes(probes)
    , m_retryDelay(firstRetryDelay)
{
    m_retry.setSingleShot(true);
    m_retry.callOnTimeout(this, [this] { run(u"watch"_s); });
    m_aging.callOnTimeout(this, &Machine::changed);
}

QList<ListedService> RemoteMachine::services() const
{
    QList<ListedService> services = m_services;
    if (!m_problem.isEmpty()) {
        for (ListedService &listed : services)
            listed.age = std::chrono::seconds(m_lastUpdated.secsTo(QDateTime::currentDateTimeUtc()));
    }
    return services;
}

void RemoteMachine::refresh()
{
    run(u"list"_s);
    connect(m_run.get(), &SshRun::ended, this, [this](const QString &problem) {
        if (!problem.isEmpty())
            fail(problem);
        else if (!accept(m_run->takeOutput()))
            fail(noList.toString());
    });
}

void RemoteMachine::watch()
{
    run(u"watch"_s);
}

void RemoteMachine::run(const QString &command)
{
    m_retry.stop();
    QStringList words{command, u"--json"_s};
    if (!m_probes)
        words.append(u"--no-probe"_s);
    m_run = std::make_unique<SshRun>(m_host, words, nullptr);
    m_run->setSilenceLimit(silenceLimit);
    if (command == u"list")
        return;
    m_run->readLines();
    connect(m_run.get(), &SshRun::lineRead, this, [this](const QByteArray &line) {
        if (!accept(line))
            m_run->giveUp(noList.toString());
    });
    connect(m_run.get(), &SshRun::ended, this, [this](const QString &problem) {
        fail(problem.isEmpty() ? u"ended the connection"_s : problem);
        m_retry.start(m_retryDelay);
        m_retryDelay = std::min(2 * m_retryDelay, lastRetryDelay);
    });
}

// Returns false if `json` is no list of servers.
bool RemoteMachine::accept(const QByteArray &json)
{
    const auto services = ServiceJson::read(json, m_host);
    if (!services)
        return false;
    m_services = *services;
    m_lastUpdated = QDateTime::currentDateTimeUtc();
    m_problem.clear();
    m_aging.stop();
    m_retryDelay = firstRetryDelay;
    Q_EMIT changed();
    Q_EMIT refreshed();
    return true;
}

QString RemoteMachine::withHost(const QString &problem) const
{
    return TerminalText::harmless(m_host) + u": "_s + problem;
}

void RemoteMachine::fail(const QString &problem)
{
    m_problem = withHost(problem);
    if (!m_services.isEmpty())
        m_aging.start(1s);
    Q_EMIT changed();
    Q_EMIT refreshed();
}

void RemoteMachine::stop(const ListedService &listed, const Report &report)
{
    auto *run = new SshRun(m_host, {u"stop"_s, listed.service.id()}, this);
    run->setSilenceLimit(silenceLimit);
    // The message of the remote portolanctl also begins with the server's description.
    const QString who = ListedService{.service = listed.service}.description() + u": "_s;
    connect(run, &SshRun::ended, this, [run, report, who](const QString &problem) {
        run->deleteLater();
        const QString text = problem.startsWith(who) ? problem.sliced(who.size()) : problem;
        report(text.isEmpty() ? u"Stopped"_s : text, problem.isEmpty());
    });
}

void RemoteMachine::reach(const Service &service, const UseAddress &use)
{
    PortForward *&forward = m_forwards[service.port];
    if (!forward)
        forward = new PortForward(m_host, service.port, this);
    if (forward->isReady())
        return use(forward->address(), {});
    connect(forward, &PortForward::ready, this, [use, forward = forward] { use(forward->address(), {}); });
    connect(forward, &PortForward::failed, this,
            [this, use, forward = forward, port = service.port](const QString &problem) {
                m_forwards.remove(port);
                forward->deleteLater();
                use({}, withHost(problem));
            });
}

} // namespace portolan
