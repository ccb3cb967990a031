#include "Commands.h"

#include "FolderReader.h"
#include "Output.h"
#include "PortScanner.h"
#include "StopReport.h"
#include "SystemSource.h"
#include "TerminalText.h"

#include <algorithm>
#include <csignal>
#include <iterator>
#include <optional>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

ScanResult scanFor(const QList<ServiceOperand> &operands)
{
    QSet<qint64> ports;
    for (const ServiceOperand &operand : operands)
        ports.insert(operand.port);
    const std::unique_ptr<ProcessSource> source = SystemSource::make();
    FolderReader files;
    return PortScanner::scanPorts(*source, files, ports);
}

QString severalProcessesText(const QList<Service> &services)
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

/// The one server among `services` that `operand` means. Nothing, and a message, where there is none or more
/// than one.
std::optional<Service> findOne(const ServiceOperand &operand, const QList<Service> &services)
{
    QList<Service> found;
    std::ranges::copy_if(services, std::back_inserter(found),
                         [&](const Service &service) { return operand.means(service); });
    if (found.size() == 1)
        return found.first();
    if (!found.isEmpty())
        Output::printError(severalProcessesText(found));
    else if (operand.pid)
        Output::printError(u"no server has the id %1-%2"_s.arg(*operand.pid).arg(operand.port));
    else
        Output::printError(u"no server on port %1"_s.arg(operand.port));
    return std::nullopt;
}

} // namespace

int Commands::stop(const CommandLine &line)
{
    // A server that was sent SIGTERM is waited for, and killed if need be, also when nothing reads the
    // output.
    std::signal(SIGPIPE, SIG_IGN);

    const auto [services, identities] = scanFor(line.operands);
    QList<Service> chosen;
    bool isDone = true;
    for (const ServiceOperand &operand : line.operands) {
        const auto service = findOne(operand, services);
        isDone &= service.has_value();
        if (service && !chosen.contains(*service))
            chosen.append(*service);
    }

    isDone &= StopReport::stopAll(chosen, identities);
    return isDone ? ExitStatus::success : ExitStatus::failure;
}

} // namespace portolan
