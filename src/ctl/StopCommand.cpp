#include "StopCommand.h"

#include "Output.h"
#include "PortScanner.h"
#include "ProcessHandle.h"
#include "Program.h"
#include "ServiceActions.h"
#include "Target.h"
#include "TerminalText.h"

#include <algorithm>
#include <csignal>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/// How long a killed process may take to go.
constexpr std::chrono::milliseconds killLimit = 2s;
/// How long to look at one of several.
constexpr std::chrono::milliseconds turn = 5ms;

/// Nothing where one of the operands makes no sense, which is said.
std::optional<QList<Target>> targetsOf(const QStringList &operands)
{
    QList<Target> targets;
    for (const QString &operand : operands) {
        const auto target = Target::parse(operand);
        if (!target) {
            Output::complain(
                u"'%1' is neither a port nor an id such as 4242-3000"_s.arg(TerminalText::harmless(operand)));
            return std::nullopt;
        }
        targets.append(*target);
    }
    return targets;
}

QList<Service> scanFor(const QList<Target> &targets)
{
    QSet<qint64> ports;
    for (const Target &target : targets)
        ports.insert(target.port);
    return PortScanner::scanPorts(ports);
}

QString described(const Service &service)
{
    return u"%1 (process %2, port %3)"_s.arg(TerminalText::harmless(service.displayName),
                                             QString::number(service.pid), QString::number(service.port));
}

QString choiceOf(const QList<Service> &services)
{
    QString text = u"%1 processes listen on port %2, stop one by its id:"_s.arg(services.size())
                       .arg(services.first().port);
    for (const Service &service : services) {
        text += u"\n  "_s + service.id() + u"  "_s + TerminalText::harmless(service.displayName);
        if (const auto folder = service.prettyFolder())
            text += u"  "_s + TerminalText::harmless(*folder);
    }
    return text;
}

/// The one server among `services` that `target` means. Nothing where there is none, or a choice; which is
/// said.
std::optional<Service> theOne(const Target &target, const QList<Service> &services)
{
    QList<Service> meant;
    std::ranges::copy_if(services, std::back_inserter(meant),
                         [&](const Service &service) { return target.means(service); });
    if (meant.size() == 1)
        return meant.first();
    if (!meant.isEmpty())
        Output::complain(choiceOf(meant));
    else if (target.pid)
        Output::complain(u"no server has the id %1-%2"_s.arg(*target.pid).arg(target.port));
    else
        Output::complain(u"no server on port %1"_s.arg(target.port));
    return std::nullopt;
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
    std::vector<Stopping> stopping;
    for (const Service &service : services) {
        (void)Output::write(u"Stopping %1…\n"_s.arg(described(service)).toUtf8());
        ProcessHandle process(service.pid);
        const bool isTold = std::ranges::any_of(
            stopping, [&](const Stopping &other) { return other.service.pid == service.pid; });
        if (!isTold)
            ServiceActions::stop(service);
        stopping.push_back({service, std::move(process), Clock::now()});
    }
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
    if (stopping.process.send(0))
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

int StopCommand::run(const CommandLine &line)
{
    const auto targets = targetsOf(line.operands);
    if (!targets)
        return Program::usageError;
    // A reader that goes away does not save a server that has been told to end.
    std::signal(SIGPIPE, SIG_IGN);

    const QList<Service> services = scanFor(*targets);
    QList<Service> chosen;
    bool isDone = true;
    for (const Target &target : *targets) {
        const auto service = theOne(target, services);
        isDone &= service.has_value();
        if (service && !chosen.contains(*service))
            chosen.append(*service);
    }

    isDone &= reportEnds(stop(chosen));
    return isDone ? 0 : 1;
}
