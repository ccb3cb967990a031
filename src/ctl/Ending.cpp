#include "Ending.h"

#include "Output.h"
#include "ProcessHandle.h"
#include "ServiceActions.h"
#include "TerminalText.h"

#include <algorithm>
#include <vector>

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

/// A server that has been told to end.
struct Stopping
{
    Service service;
    ProcessHandle process;
    Clock::time_point since;
};

std::vector<Stopping> stop(const QList<Service> &services)
{
    // All are told before a word is written: a terminal that is held would hold up the signals, and meanwhile
    // the ids could go to other processes.
    std::vector<Stopping> stopping;
    for (const Service &service : services) {
        ProcessHandle process(service.pid);
        const bool isTold = std::ranges::any_of(
            stopping, [&](const Stopping &other) { return other.service.pid == service.pid; });
        if (!isTold)
            ServiceActions::stop(service);
        stopping.push_back({service, std::move(process), Clock::now()});
    }
    for (const Stopping &one : stopping)
        (void)Output::write(u"Stopping %1…\n"_s.arg(described(one.service)).toUtf8());
    return stopping;
}

/// Waits for at most `patience` and says so when the server has ended.
bool reportEnd(const Stopping &stopping, std::chrono::milliseconds patience)
{
    if (!stopping.process.waitForEnd(patience))
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
    if (stopping.process.send(0) || stopping.process.waitForEnd(0ms))
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

bool Ending::of(const QList<Service> &services)
{
    return reportEnds(stop(services));
}
