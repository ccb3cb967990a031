// SPDX-License-Identifier: MIT
#include "StopReport.h"

#include "Output.h"
#include "ProcessHandle.h"
#include "TerminalText.h"
#include "Termination.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/// How long a killed process may take to end.
constexpr std::chrono::milliseconds killTimeout = 2s;
/// How long to wait for one of several before waiting for the next.
constexpr std::chrono::milliseconds pollInterval = 5ms;

QString described(const Service &service)
{
    return u"%1 (process %2, port %3)"_s.arg(TerminalText::harmless(service.displayName),
                                             QString::number(service.pid), QString::number(service.port));
}

/// A server being stopped.
struct Stopping
{
    Service service;
    std::shared_ptr<const ProcessHandle> process;
    Clock::time_point since;
};

std::vector<Stopping> openHandles(const QList<Service> &services,
                                  const QHash<qint32, ProcessIdentity> &identities)
{
    std::vector<Stopping> all;
    for (const Service &service : services) {
        const auto same =
            std::ranges::find(all, service.pid, [](const Stopping &o) { return o.service.pid; });
        const auto identity = identities.find(service.pid);
        all.push_back({service, same != all.end() ? same->process
                                : identity != identities.end()
                                    ? std::make_shared<const ProcessHandle>(*identity)
                                    : std::make_shared<const ProcessHandle>(service.pid)});
    }
    return all;
}

void sendStop(std::vector<Stopping> &all, QObject *owner)
{
    for (auto one = all.begin(); one != all.end(); ++one) {
        if (std::none_of(all.begin(), one, [&](const Stopping &o) { return o.process == one->process; }))
            Termination::start(one->process, owner);
        one->since = Clock::now();
    }
}

/// Waits for the end of the server for at most `timeout` and reports it.
bool reportEnd(const Stopping &stopping, std::chrono::milliseconds timeout)
{
    if (!stopping.process->waitForEnd(timeout))
        return false;
    const std::chrono::duration<double> time = Clock::now() - stopping.since;
    (void)Output::write(
        u"Stopped %1 after %2 s.\n"_s.arg(described(stopping.service), QString::number(time.count(), 'f', 1))
            .toUtf8());
    return true;
}

/// Reports a server that cannot be stopped because it takes no signals from this user.
bool reportForbidden(const Stopping &stopping)
{
    if (stopping.process->send(0) || stopping.process->waitForEnd(0ms))
        return false;
    Output::printError(described(stopping.service) + u" belongs to another user"_s);
    return true;
}

/// Reports each when it has ended. Returns whether all have.
bool reportEnds(std::vector<Stopping> stopping)
{
    const auto end = Clock::now() + Termination::gracePeriod + killTimeout;
    std::erase_if(stopping, [](const Stopping &one) { return reportEnd(one, 0ms); });
    const auto forbidden = std::erase_if(stopping, reportForbidden);
    while (!stopping.empty() && Clock::now() < end) {
        QCoreApplication::processEvents(); // sends SIGKILL to those whose grace period is over
        std::erase_if(stopping, [](const Stopping &one) { return reportEnd(one, pollInterval); });
    }
    for (const Stopping &one : stopping)
        Output::printError(described(one.service) + u" still runs"_s);
    return forbidden == 0 && stopping.empty();
}

} // namespace

bool StopReport::stopAll(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities)
{
    std::vector<Stopping> stopping = openHandles(services, identities);
    // Not std::ranges, whose subranges clang 14 does not compile with this standard library.
    const auto ended = std::stable_partition(
        stopping.begin(), stopping.end(), [](const Stopping &one) { return !one.process->waitForEnd(0ms); });
    const std::vector<Stopping> endedBefore(ended, stopping.end());
    stopping.erase(ended, stopping.end());
    // All signals are sent before anything is written: a terminal stopped by Control-S would delay them.
    QObject owner;
    sendStop(stopping, &owner);
    for (const Stopping &one : endedBefore)
        (void)Output::write(u"%1 had ended already.\n"_s.arg(described(one.service)).toUtf8());
    for (const Stopping &one : stopping)
        (void)Output::write(u"Stopping %1…\n"_s.arg(described(one.service)).toUtf8());
    return reportEnds(std::move(stopping));
}

} // namespace portolan
