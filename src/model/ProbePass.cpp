#include "ProbePass.h"

ProbePass::~ProbePass()
{
    for (const auto &probe : m_probes) {
        if (!probe->isFinished())
            probe->cancel();
    }
}

void ProbePass::start(const QList<Service> services, const Checker &check)
{
    m_probes.reserve(services.size());
    for (const Service &service : services) {
        auto &probe = m_probes.emplace_back(std::make_unique<QFutureWatcher<Health>>());
        QObject::connect(probe.get(), &QFutureWatcher<Health>::finished, probe.get(),
                         [probe = probe.get(), sender = m_results.sender(), key = keyOf(service)] {
                             // A checker that gives up without a verdict leaves the health unknown.
                             const QFuture<Health> future = probe->future();
                             const Health health =
                                 future.resultCount() > 0 ? future.result() : Health::unknown();
                             sender.send({key, health});
                         });
        probe->setFuture(check(service.port));
        ++m_outstanding;
    }
}
