#include "OpenCommand.h"

#include "Output.h"
#include "PortScanner.h"
#include "Program.h"
#include "ServiceActions.h"
#include "Target.h"
#include "TerminalText.h"
#include "XdgOpen.h"

using namespace Qt::StringLiterals;

int OpenCommand::run(const CommandLine &line)
{
    const QString operand = line.operands.first();
    const auto target = Target::parse(operand);
    if (!target || target->pid) {
        Output::complain(u"'%1' is no port"_s.arg(TerminalText::harmless(operand)));
        return Program::usageError;
    }
    const QList<Service> services = PortScanner::scanPorts({target->port});
    if (services.isEmpty()) {
        Output::complain(u"no server on port %1"_s.arg(target->port));
        return 1;
    }
    if (!XdgOpen::isInstalled()) {
        Output::complain(u"there is no xdg-open to find a browser with"_s);
        return 1;
    }
    // Where several processes share the port, the address is the same.
    const Service &service = services.first();
    ServiceActions::openInBrowser(service);
    return Output::write("Opening " + service.url().toEncoded() + '\n') ? 0 : 1;
}
