#include "StopCommand.h"

#include "AbandonableWorker.h"
#include "Ending.h"
#include "Output.h"
#include "PortScanner.h"
#include "Program.h"
#include "ServiceOperand.h"
#include "SystemSource.h"
#include "TerminalText.h"

#include <algorithm>
#include <csignal>
#include <optional>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// Nothing where one of the operands makes no sense, which is said.
std::optional<QList<ServiceOperand>> targetsOf(const QStringList &operands)
{
    QList<ServiceOperand> targets;
    for (const QString &operand : operands) {
        const auto target = ServiceOperand::parse(operand);
        if (!target) {
            Output::complain(
                u"'%1' is neither a port nor an id such as 4242-3000"_s.arg(TerminalText::harmless(operand)));
            return std::nullopt;
        }
        targets.append(*target);
    }
    return targets;
}

ScanResult scanFor(const QList<ServiceOperand> &targets, ProcessSource &source)
{
    QSet<qint64> ports;
    for (const ServiceOperand &target : targets)
        ports.insert(target.port);
    AbandonableWorker files;
    return PortScanner::scanPorts(source, files, ports);
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
std::optional<Service> theOne(const ServiceOperand &target, const QList<Service> &services)
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

} // namespace

int StopCommand::run(const CommandLine &line)
{
    const auto targets = targetsOf(line.operands);
    if (!targets)
        return Program::usageError;
    // A reader that goes away does not save a server that has been told to end.
    std::signal(SIGPIPE, SIG_IGN);

    const std::unique_ptr<ProcessSource> source = SystemSource::make();
    const auto [services, identities] = scanFor(*targets, *source);
    QList<Service> chosen;
    bool isDone = true;
    for (const ServiceOperand &target : *targets) {
        const auto service = theOne(target, services);
        isDone &= service.has_value();
        if (service && !chosen.contains(*service))
            chosen.append(*service);
    }

    isDone &= Ending::of(chosen, identities, [&] { return scanFor(*targets, *source).services; });
    return isDone ? 0 : 1;
}

} // namespace portolan
