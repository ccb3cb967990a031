#include "ServiceActions_p.h"

#include "Escalation.h"
#include "ProcessHandle.h"

#include <csignal>

void ServiceActions::stop(const Service &service)
{
    static Escalation escalation(stopGrace);

    ProcessHandle process(service.pid);
    process.send(SIGTERM);
    escalation.add(std::move(process));
}
