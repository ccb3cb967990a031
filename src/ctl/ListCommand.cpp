// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Machines.h"
#include "Output.h"
#include "ServiceJson.h"
#include "ServiceTable.h"

namespace portolan {

namespace {

// `isComplete`: whether everything that was asked for could be found; if not, the errors have said so.
QByteArray table(const Machines &machines, const QList<ListedService> &services, bool isComplete)
{
    ServiceTable::Layout layout{.hasHosts = machines.hasHosts()};
    if (Output::isTerminal())
        layout.columns = Output::size().columns;
    const TerminalColors colors = Output::colors();
    if (services.isEmpty() && Output::isTerminal() && !isComplete)
        return {};
    if (services.isEmpty() && Output::isTerminal())
        return (colors.styled(ServiceTable::emptyText(!machines.services().isEmpty(), *layout.columns)) +
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
    Machines machines(line, line.probe);
    if (const int signal = machines.refreshOnce())
        return ExitStatus::endedBy(signal);
    bool isComplete = machines.problems().isEmpty();
    QList<ListedService> services =
        ListedService::visible(machines.services(), line.search, machines.order());
    if (!line.operands.isEmpty()) {
        const auto choice =
            ServiceOperand::choose(line.operands, services, ServiceOperand::Meaning::severalServers);
        for (const QString &problem : choice.problems)
            Output::printError(problem);
        isComplete &= choice.problems.isEmpty();
        services = choice.services;
    }
    const bool isWritten = Output::write(line.json ? ServiceJson::of(services, QJsonDocument::Indented)
                                                   : table(machines, services, isComplete));
    return isWritten && isComplete ? ExitStatus::success : ExitStatus::failure;
}

} // namespace portolan
