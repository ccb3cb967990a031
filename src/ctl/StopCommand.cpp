// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "FolderReader.h"
#include "Machines.h"
#include "Output.h"
#include "PortScanner.h"
#include "StopReport.h"
#include "SystemSource.h"
#include "TerminalText.h"
#include "TerminationSignals.h"

#include <QEventLoop>

#include <algorithm>
#include <csignal>
#include <optional>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

ScanResult scanFor(const QList<ServiceOperand> &operands)
{
    const std::unique_ptr<ProcessSource> source = SystemSource::make();
    FolderReader files;
    if (!std::ranges::all_of(operands, &QString::isEmpty, &ServiceOperand::name))
        return PortScanner::scan(*source, files);
    QSet<qint64> ports;
    for (const ServiceOperand &operand : operands)
        ports.insert(operand.port);
    return PortScanner::scan(*source, files, {.ports = ports});
}

/// The servers to stop, and whether each operand means one. An operand that means several stops nothing.
struct Choice
{
    QList<ListedService> services;
    bool isComplete = true;
};

Choice chosenBy(const QList<ServiceOperand> &operands, const QList<ListedService> &services)
{
    Choice choice;
    bool isAmbiguous = false;
    for (const ServiceOperand &operand : operands) {
        const QList<ListedService> found = operand.in(services);
        if (found.size() == 1) {
            if (!choice.services.contains(found.first()))
                choice.services.append(found.first());
            continue;
        }
        choice.isComplete = false;
        isAmbiguous |= !found.isEmpty();
        Output::printError(found.isEmpty() ? operand.noneText() : operand.severalText(found));
    }
    if (isAmbiguous)
        choice.services.clear();
    return choice;
}

int stopHere(const CommandLine &line)
{
    const auto [services, identities] = scanFor(line.operands);
    QList<ListedService> listed;
    for (const Service &service : services)
        listed.append({.service = service});
    const Choice choice = chosenBy(line.operands, listed);
    QList<Service> chosen;
    for (const ListedService &one : choice.services)
        chosen.append(one.service);
    const bool haveEnded = StopReport::stopAll(chosen, identities);
    return haveEnded && choice.isComplete ? ExitStatus::success : ExitStatus::failure;
}

int stopOnHosts(CommandLine line)
{
    line.probe = false;
    Machines machines(line);
    if (const int signal = machines.lookOnce())
        return ExitStatus::endedBy(signal);
    const Choice choice = chosenBy(line.operands, machines.services());
    bool isDone = choice.isComplete && machines.problems().isEmpty();
    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::exit);
    qsizetype left = choice.services.size();
    for (const ListedService &chosen : choice.services) {
        const QString who = TerminalText::harmless(u"%1: %2 (process %3, port %4): "_s.arg(
            chosen.host, chosen.service.displayName, QString::number(chosen.service.pid),
            QString::number(chosen.service.port)));
        machines.machine(chosen.host).stop(chosen.service, [&, who](const Machine::Outcome &outcome) {
            if (outcome.hasFailed)
                Output::printError(who + outcome.text);
            else
                (void)Output::write((who + outcome.text + u'\n').toUtf8());
            isDone &= !outcome.hasFailed;
            left -= outcome.isOver ? 1 : 0;
            if (left == 0)
                loop.quit();
        });
    }
    if (left > 0) {
        if (const int signal = loop.exec())
            return ExitStatus::endedBy(signal);
    }
    return isDone ? ExitStatus::success : ExitStatus::failure;
}

} // namespace

int Commands::stop(const CommandLine &line)
{
    // A server that was sent SIGTERM is waited for, and killed if need be, also when nothing reads the
    // output.
    std::signal(SIGPIPE, SIG_IGN);
    return line.hosts.isEmpty() ? stopHere(line) : stopOnHosts(line);
}

} // namespace portolan
