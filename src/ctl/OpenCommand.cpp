#include "OpenCommand.h"

#include "AbandonableWorker.h"
#include "Output.h"
#include "PortScanner.h"
#include "Program.h"
#include "ServiceOperand.h"
#include "SystemSource.h"
#include "TerminalText.h"
#include "XdgOpen.h"

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long to wait for xdg-open to fail. Some run for as long as the browser does.
constexpr std::chrono::milliseconds patience = 2s;

} // namespace

int OpenCommand::run(const CommandLine &line)
{
    const QString operand = line.operands.first();
    const auto target = ServiceOperand::parse(operand);
    if (!target || target->pid) {
        Output::complain(u"'%1' is no port"_s.arg(TerminalText::harmless(operand)));
        return Program::usageError;
    }
    const std::unique_ptr<ProcessSource> source = SystemSource::make();
    AbandonableWorker files;
    const QList<Service> services = PortScanner::scanPorts(*source, files, {target->port}).services;
    if (services.isEmpty()) {
        Output::complain(u"no server on port %1"_s.arg(target->port));
        return 1;
    }
    if (!XdgOpen::isInstalled()) {
        Output::complain(u"there is no xdg-open to find a browser with"_s);
        return 1;
    }
    // Where several processes share the port, the address is the same.
    const QUrl url = services.first().url();
    const bool isWritten = Output::write("Opening " + url.toEncoded() + '\n');
    if (!XdgOpen::addressWatched(url, patience)) {
        Output::complain(u"xdg-open could not open %1"_s.arg(url.toString()));
        return 1;
    }
    return isWritten ? 0 : 1;
}

} // namespace portolan
