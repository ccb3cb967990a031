#include "Commands.h"

#include "FolderReader.h"
#include "Output.h"
#include "PortScanner.h"
#include "SystemSource.h"
#include "XdgOpen.h"

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

} // namespace

int Commands::open(const CommandLine &line)
{
    const qint64 port = line.operands.first().port;
    const std::unique_ptr<ProcessSource> source = SystemSource::make();
    FolderReader files;
    const QList<Service> services = PortScanner::scanPorts(*source, files, {port}).services;
    if (services.isEmpty())
        return fail(u"no server on port %1"_s.arg(port));
    if (!XdgOpen::isInstalled())
        return fail(u"there is no xdg-open to find a browser with"_s);
    // Where several processes share the port, the address is the same.
    const QString url = services.first().url();
    const bool isWritten = Output::write("Opening " + url.toLatin1() + '\n');
    if (!XdgOpen::addressWatched(QUrl(url), openTimeout))
        return fail(u"xdg-open could not open %1"_s.arg(url));
    return isWritten ? ExitStatus::success : ExitStatus::failure;
}

} // namespace portolan
