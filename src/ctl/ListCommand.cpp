// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Machines.h"
#include "Output.h"
#include "ServiceJson.h"
#include "ServiceTable.h"

#include <QSet>

namespace portolan {

namespace {

/// Those of `services` that the operands mean; all without operands. Prints a message for each that means
/// none, or is the start of several names, and sets `isComplete` to false.
QList<ListedService> chosenBy(const QList<ServiceOperand> &operands, const QList<ListedService> &services,
                              bool &isComplete)
{
    if (operands.isEmpty())
        return services;
    QSet<QString> keys;
    for (const ServiceOperand &operand : operands) {
        const QList<ListedService> found = operand.in(services);
        if (found.isEmpty() || operand.isAmbiguous(found)) {
            Output::printError(found.isEmpty() ? operand.noneText() : operand.severalText(found));
            isComplete = false;
            continue;
        }
        for (const ListedService &listed : found)
            keys.insert(listed.key());
    }
    QList<ListedService> chosen = services;
    chosen.removeIf([&](const ListedService &listed) { return !keys.contains(listed.key()); });
    return chosen;
}

QByteArray table(const Machines &machines, const QList<ListedService> &services)
{
    ServiceTable::Layout layout{.hasHosts = machines.hasHosts()};
    if (Output::isTerminal())
        layout.columns = Output::size().columns;
    const TerminalColors colors = Output::colors();
    if (services.isEmpty() && Output::isTerminal())
        return (colors.styled(ServiceTable::emptyText(!machines.services().isEmpty(), layout.columns)) +
                u'\n')
            .toUtf8();
    QString text;
    for (const StyledLine &line : ServiceTable::of(services, layout))
        text += colors.styled(line) + u'\n';
    return text.toUtf8();
}

} // namespace

int Commands::list(const CommandLine &line)
{
    Machines machines(line);
    if (const int signal = machines.lookOnce())
        return ExitStatus::endedBy(signal);
    bool isComplete = machines.problems().isEmpty();
    const QList<ListedService> services = chosenBy(line.operands, machines.visible(), isComplete);
    const bool isWritten = Output::write(line.json ? ServiceJson::of(services, ServiceJson::Layout::indented)
                                                   : table(machines, services));
    return isWritten && isComplete ? ExitStatus::success : ExitStatus::failure;
}

} // namespace portolan
