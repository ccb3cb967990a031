#include "Ending.h"

#include "Output.h"
#include "ProcessHandle.h"
#include "ServiceActions.h"
#include "TerminalText.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <vector>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/// How long a killed process may take to go.
constexpr std::chrono::milliseconds killLimit = 2s;
/// How long to look at one of several.
constexpr std::chrono::milliseconds turn = 5ms;

QString described(const Service &service)
{
    return u"%1 (process %2, port %3)"_s.arg(TerminalText::harmless(service.displayName),
                                             QString::number(service.pid), QString::number(service.port));
}

/// A server that is to end.
struct Stopping
{
    Service service;
    std::shared_ptr<const ProcessHandle> process;
    Clock::time_point since;
};

std::vector<Stopping> held(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities)
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

/// Moves those that `isTaken` is true of out of `all`.
template <typename Predicate>
std::vector<Stopping> taken(std::vector<Stopping> &all, Predicate isTaken)
{
    const auto part = std::ranges::stable_partition(all, std::not_fn(isTaken));
    std::vector<Stopping> result(std::make_move_iterator(part.begin()), std::make_move_iterator(part.end()));
    all.erase(part.begin(), part.end());
    return result;
}

void tell(std::vector<Stopping> &all)
{
    for (auto one = all.begin(); one != all.end(); ++one) {
        if (std::none_of(all.begin(), one, [&](const Stopping &o) { return o.process == one->process; }))
            ServiceActions::stop(one->process);
        one->since = Clock::now();
    }
}

/// Waits for at most `patience` and says so when the server has ended.
bool reportEnd(const Stopping &stopping, std::chrono::milliseconds patience)
{
    if (!stopping.process->waitForEnd(patience))
        return false;
    const std::chrono::duration<double> time = Clock::now() - stopping.since;
    (void)Output::write(
        u"Stopped %1 after %2 s.\n"_s.arg(described(stopping.service), QString::number(time.count(), 'f', 1))
            .toUtf8());
    return true;
}

/// Says so of a server that lives on because it takes no signals from this user.
bool reportImmune(const Stopping &stopping)
{
    if (stopping.process->send(0) || stopping.process->waitForEnd(0ms))
        return false;
    Output::complain(described(stopping.service) + u" belongs to another user"_s);
    return true;
}

/// Reports each as its end comes. Whether that came for all.
bool reportEnds(std::vector<Stopping> stopping)
{
    const auto end = Clock::now() + ServiceActions::stopGrace + killLimit;
    std::erase_if(stopping, [](const Stopping &one) { return reportEnd(one, 0ms); });
    const auto immune = std::erase_if(stopping, reportImmune);
    while (!stopping.empty() && Clock::now() < end)
        std::erase_if(stopping, [](const Stopping &one) { return reportEnd(one, turn); });
    for (const Stopping &one : stopping)
        Output::complain(described(one.service) + u" still runs"_s);
    return immune == 0 && stopping.empty();
}

} // namespace

bool Ending::of(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities,
                const std::function<QList<Service>()> &lookAgain)
{
    if (services.isEmpty())
        return true;
    std::vector<Stopping> stopping = held(services, identities);
    const QList<Service> listed = lookAgain();
    const auto ended = taken(stopping, [](const Stopping &one) { return one.process->waitForEnd(0ms); });
    const auto strange = taken(stopping, [&](const Stopping &one) {
        return std::ranges::find(listed, one.service.id(), &Service::id) == listed.end();
    });
    // All are told before a word is written: a terminal that is held would hold up the signals.
    tell(stopping);
    for (const Stopping &one : ended)
        (void)Output::write(u"%1 had ended already.\n"_s.arg(described(one.service)).toUtf8());
    for (const Stopping &one : strange)
        Output::complain(described(one.service) + u" listens there no more and is left alone"_s);
    for (const Stopping &one : stopping)
        (void)Output::write(u"Stopping %1…\n"_s.arg(described(one.service)).toUtf8());
    return reportEnds(std::move(stopping)) && strange.empty();
}

} // namespace portolan
