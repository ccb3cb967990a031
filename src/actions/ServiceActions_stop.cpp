#include "ServiceActions_p.h"

#include "Escalation.h"
#include "ProcessHandle.h"

#include <csignal>
#include <system_error>

namespace portolan {

void ServiceActions::stop(const Service &service, const std::optional<ProcessIdentity> &identity)
{
    stop(std::make_shared<ProcessHandle>(identity ? ProcessHandle(*identity) : ProcessHandle(service.pid)));
}

void ServiceActions::stop(std::shared_ptr<const ProcessHandle> process)
{
    process->send(SIGTERM);
    try {
        static Escalation escalation(stopGrace);
        escalation.add(std::move(process));
    } catch (const std::system_error &) {
        // On a machine that has no thread left it stays at SIGTERM.
    }
}

} // namespace portolan
