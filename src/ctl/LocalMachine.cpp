// SPDX-License-Identifier: MIT
#include "LocalMachine.h"

#include "PortScanner.h"
#include "ProcessHandle.h"
#include "SystemSource.h"
#include "Termination.h"

#include <QFuture>

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long a killed process may take to end.
constexpr std::chrono::milliseconds killTimeout = 2s;

} // namespace

LocalMachine::LocalMachine(UserDefaults &defaults, bool probes, std::optional<QSet<qint64>> ports)
    : m_source(SystemSource::make())
    , m_store(
          defaults,
          [this, ports = std::move(ports)](std::stop_token stop) {
              return PortScanner::scan(*m_source, m_files, {.stop = std::move(stop), .ports = ports});
          },
          [this, probes](qint64 port) {
              return probes ? m_checker.check(port) : QtFuture::makeReadyFuture(Health::unknown());
          })
{
    m_store.setAutoRefresh(false); // each command has refresh times of its own
    m_next.setSingleShot(true);
    m_next.callOnTimeout(this, &LocalMachine::watch);
    connect(&m_store, &ServiceStore::servicesChanged, this, &Machine::changed);
    connect(&m_store, &ServiceStore::lastUpdatedChanged, this, &Machine::changed);
}

QList<ListedService> LocalMachine::services() const
{
    const QSet<qint64> pinnedPorts = m_store.pinnedPorts();
    QList<ListedService> services;
    for (const Service &service : m_store.services())
        services.append({.service = service,
                         .identity = m_store.identityOf(service),
                         .isPinned = pinnedPorts.contains(service.port)});
    return services;
}

void LocalMachine::refresh()
{
    m_store.refresh([this] { Q_EMIT refreshed(); });
}

void LocalMachine::watch()
{
    m_store.refresh([this] {
        m_next.start(ServiceStore::usualInterval);
        Q_EMIT refreshed();
    });
}

void LocalMachine::stop(const ListedService &listed, const Report &report)
{
    const qint32 pid = listed.service.pid;
    // A process with several ports is signalled once.
    auto process = m_stopping.value(pid).lock();
    const bool isTold = bool(process);
    if (!isTold) {
        process = listed.identity ? std::make_shared<const ProcessHandle>(*listed.identity)
                                  : std::make_shared<const ProcessHandle>(pid);
        m_stopping[pid] = process;
    }
    const bool hadEnded = !isTold && process->waitForEnd(0ms);
    const bool isForbidden = !process->send(0);
    if (!isTold && !hadEnded && !isForbidden)
        Termination::start(process, this);

    auto *poll = new QTimer(this);
    poll->callOnTimeout(this, [=, this, start = std::chrono::steady_clock::now()] {
        const bool hasEnded = process->waitForEnd(0ms);
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        if (!hasEnded && !isForbidden && time < Termination::gracePeriod + killTimeout)
            return;
        poll->deleteLater();
        m_stopping.remove(pid); // which may be given to another process
        report(hadEnded      ? u"Had ended"_s
               : hasEnded    ? u"Stopped in %1 s"_s.arg(time.count(), 0, 'f', 1)
               : isForbidden ? u"Belongs to another user"_s
                             : u"Still runs"_s,
               hasEnded);
        if (m_next.isActive()) // while it is watched, the list shows it at once
            watch();
    });
    poll->start(10ms);
}

void LocalMachine::reach(const Service &service, const UseAddress &use)
{
    use(service.url(), {});
}

} // namespace portolan
