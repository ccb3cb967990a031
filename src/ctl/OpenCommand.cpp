// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Machines.h"
#include "Output.h"
#include "TerminationSignals.h"
#include "XdgOpen.h"

#include <QEventLoop>
#include <QUrl>

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long to wait for xdg-open to fail. Some variants run as long as the browser does.
constexpr std::chrono::milliseconds openTimeout = 2s;

int fail(const QString &message)
{
    Output::printError(message);
    return ExitStatus::failure;
}

/// Opens `url`, and prints that.
int openInBrowser(const QString &url)
{
    if (!XdgOpen::isInstalled())
        return fail(u"there is no xdg-open to find a browser with"_s);
    const bool isWritten = Output::write("Opening " + url.toLatin1() + '\n');
    if (!XdgOpen::addressWatched(QUrl(url), openTimeout))
        return fail(u"xdg-open could not open %1"_s.arg(url));
    return isWritten ? ExitStatus::success : ExitStatus::failure;
}

// Forwards a port of this machine to the other machine's until the user ends it.
int openForwarded(Machine &machine, qint64 port)
{
    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::quit);
    machine.reach({.port = port}, [&](const QString &address, const QString &reason) {
        if (address.isEmpty())
            return loop.exit(fail(reason));
        (void)openInBrowser(address); // the port may be of use without a browser
        (void)Output::write("Control-C ends the connection.\n");
    });
    return loop.exec();
}

} // namespace

int Commands::open(const CommandLine &line)
{
    Machines machines(line, false);
    if (machines.hasHosts())
        return openForwarded(machines.machine(line.hosts.first()), line.operands.first().port);
    if (const int signal = machines.refreshOnce())
        return ExitStatus::endedBy(signal);
    const auto choice =
        ServiceOperand::choose(line.operands, machines.services(), ServiceOperand::Meaning::severalServers);
    if (choice.services.isEmpty())
        return fail(choice.problems.first());
    // Where several processes share the port, the address is the same.
    return openInBrowser(choice.services.first().service.url());
}

} // namespace portolan
