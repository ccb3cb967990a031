// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "FolderReader.h"
#include "Output.h"
#include "PortForward.h"
#include "PortScanner.h"
#include "SystemSource.h"
#include "TerminalText.h"
#include "TerminationSignals.h"
#include "XdgOpen.h"

#include <QEventLoop>
#include <QUrl>

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long to wait for xdg-open to fail. Some run for as long as the browser does.
constexpr std::chrono::milliseconds openTimeout = 2s;

int fail(const QString &message)
{
    Output::printError(message);
    return ExitStatus::failure;
}

/// Opens `url`, and says so.
int openInBrowser(const QString &url)
{
    if (!XdgOpen::isInstalled())
        return fail(u"there is no xdg-open to find a browser with"_s);
    const bool isWritten = Output::write("Opening " + url.toLatin1() + '\n');
    if (!XdgOpen::addressWatched(QUrl(url), openTimeout))
        return fail(u"xdg-open could not open %1"_s.arg(url));
    return isWritten ? ExitStatus::success : ExitStatus::failure;
}

// The other machine's port is one of this machine until the user ends it.
int openOn(const QString &host, qint64 port)
{
    QEventLoop loop;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &loop, &QEventLoop::quit);
    PortForward forward(host, port);
    QObject::connect(&forward, &PortForward::failed, &loop, [&](const QString &problem) {
        loop.exit(fail(TerminalText::harmless(host) + u": "_s + problem));
    });
    QObject::connect(&forward, &PortForward::ready, &loop, [&] {
        (void)openInBrowser(forward.address()); // the port may be of use without a browser
        (void)Output::write("Control-C ends the connection.\n");
    });
    return loop.exec();
}

} // namespace

int Commands::open(const CommandLine &line)
{
    const qint64 port = line.operands.first().port;
    if (!line.hosts.isEmpty())
        return openOn(line.hosts.first(), port);
    const std::unique_ptr<ProcessSource> source = SystemSource::make();
    FolderReader files;
    const QList<Service> services = PortScanner::scan(*source, files, {.ports = {{port}}}).services;
    if (services.isEmpty())
        return fail(u"no server on port %1"_s.arg(port));
    // Where several processes share the port, the address is the same.
    return openInBrowser(services.first().url());
}

} // namespace portolan
