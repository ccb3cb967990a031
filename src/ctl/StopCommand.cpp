// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Machines.h"
#include "Output.h"
#include "TerminationSignals.h"

#include <QEventLoop>

#include <csignal>

namespace portolan {

using namespace Qt::StringLiterals;

int Commands::stop(const CommandLine &line)
{
    // A server that was sent SIGTERM is waited for, and killed if necessary, even if nothing reads the
    // output.
    std::signal(SIGPIPE, SIG_IGN);
    Machines machines(line, false);
    if (const int signal = machines.refreshOnce())
        return ExitStatus::endedBy(signal);
    const auto choice =
        ServiceOperand::choose(line.operands, machines.services(), ServiceOperand::Meaning::oneServer);
    for (const QString &problem : choice.problems)
        Output::printError(problem);
    if (choice.isAmbiguous || choice.services.isEmpty())
        return ExitStatus::failure;

    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::exit);
    bool isDone = choice.problems.isEmpty() && machines.problems().isEmpty();
    qsizetype left = choice.services.size();
    for (const ListedService &listed : choice.services) {
        const QString who = listed.description() + u": "_s;
        machines.machine(listed.host).stop(listed, [&, who](const QString &text, bool hasEnded) {
            if (hasEnded)
                (void)Output::write((who + text + u'\n').toUtf8());
            else
                Output::printError(who + text);
            isDone &= hasEnded;
            if (--left == 0)
                loop.quit();
        });
    }
    // After all are signalled: a terminal stopped by Control-S takes no output, which would delay the
    // signals.
    for (const ListedService &listed : choice.services)
        (void)Output::write((listed.description() + u": Stopping…\n"_s).toUtf8());
    if (const int signal = loop.exec())
        return ExitStatus::endedBy(signal);
    return isDone ? ExitStatus::success : ExitStatus::failure;
}

} // namespace portolan
