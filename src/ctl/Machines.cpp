// SPDX-License-Identifier: MIT
#include "Machines.h"

#include "LocalMachine.h"
#include "Output.h"
#include "ProgressLine.h"
#include "RemoteMachine.h"
#include "TerminationSignals.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// The text shown while waiting for `machines`.
QString progressText(const Machines &machines, size_t refreshed, size_t all)
{
    if (machines.hasHosts())
        return u"Asking the machines… %1 of %2"_s.arg(refreshed).arg(all);
    if (!machines.probes() || !machines.lastUpdated().isValid())
        return u"Looking for servers…"_s;
    const QList<ListedService> services = machines.services();
    const auto answered = std::ranges::count_if(services, [](const ListedService &listed) {
        return listed.service.health.state() != Health::State::unknown;
    });
    return u"Asking the servers… %1 of %2"_s.arg(answered).arg(services.size());
}

/// The ports of the operands; nothing if one is a name, or if there are no operands.
std::optional<QSet<qint64>> portsOf(const QList<ServiceOperand> &operands)
{
    QSet<qint64> ports;
    for (const ServiceOperand &operand : operands) {
        if (!operand.name.isEmpty())
            return std::nullopt;
        ports.insert(operand.port);
    }
    return operands.isEmpty() ? std::nullopt : std::optional(ports);
}

} // namespace

Machines::Machines(const CommandLine &line, bool probes)
    : m_defaults(UserDefaults::defaultPath(), UserDefaults::Access::ReadOnly)
    , m_hasHosts(!line.hosts.isEmpty())
    , m_probes(probes)
{
    const auto stored = SortOrder::fromRawValue(m_defaults.string(u"sortOrder"_s).value_or(QString()));
    m_order = line.sort.value_or(stored.value_or(SortOrder::port));
    if (!m_hasHosts)
        m_machines.emplace(QString(),
                           std::make_unique<LocalMachine>(m_defaults, probes, portsOf(line.operands)));
    for (const QString &host : line.hosts)
        m_machines.emplace(host, std::make_unique<RemoteMachine>(host, probes));
    for (const auto &[host, machine] : m_machines) {
        connect(machine.get(), &Machine::changed, this, &Machines::changed);
        connect(machine.get(), &Machine::refreshed, this, &Machines::refreshed);
    }
}

QList<ListedService> Machines::services() const
{
    QList<ListedService> services;
    for (const auto &[host, machine] : m_machines)
        services += machine->services();
    return services;
}

QDateTime Machines::lastUpdated() const
{
    QDateTime latest;
    for (const auto &[host, machine] : m_machines) {
        if (const QDateTime time = machine->lastUpdated();
            time.isValid() && (!latest.isValid() || time > latest))
            latest = time;
    }
    return latest;
}

QStringList Machines::problems() const
{
    QStringList problems;
    for (const auto &[host, machine] : m_machines) {
        if (const QString problem = machine->problem(); !problem.isEmpty())
            problems.append(problem);
    }
    return problems;
}

void Machines::printNewProblems()
{
    const QStringList problems = this->problems();
    for (const QString &problem : problems) {
        if (!m_printedProblems.contains(problem))
            Output::printError(problem);
    }
    m_printedProblems = {problems.begin(), problems.end()};
}

int Machines::refreshOnce()
{
    ProgressLine progress;
    QEventLoop loop;
    size_t refreshedCount = 0;
    const auto showProgress = [&] {
        progress.setText(progressText(*this, refreshedCount, m_machines.size()));
    };
    connect(this, &Machines::changed, &loop, showProgress);
    connect(this, &Machines::refreshed, &loop, [&] {
        if (++refreshedCount == m_machines.size())
            loop.quit();
        showProgress();
    });
    const TerminationSignals signals;
    connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::exit);
    showProgress();
    QTimer::singleShot(0, &loop, [&] {
        for (const auto &[host, machine] : m_machines)
            machine->refresh();
    });
    const int signal = loop.exec();
    progress.erase();
    if (signal == 0)
        printNewProblems();
    return signal;
}

void Machines::watch()
{
    for (const auto &[host, machine] : m_machines)
        machine->watch();
}

} // namespace portolan
