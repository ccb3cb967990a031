#include "ProbePass.h"

namespace portolan {

ProbePass::~ProbePass()
{
    for (PendingProbe &probe : m_probes) {
        if (!probe.outcome.isFinished())
            probe.outcome.cancel();
    }
}

void ProbePass::start(const QList<Service> services, const Checker &check)
{
    m_probes.reserve(size_t(services.size()));
    for (const Service &service : services) {
        const auto tell = [sender = m_results.sender(), key = keyOf(service)](Health health) {
            sender.send({key, health});
        };
        // On the thread that finishes the probe: a QFutureWatcher would take five events of this one for
        // each.
        PendingProbe probe{.outcome = check(service.port)};
        probe.told = probe.outcome.then(QtFuture::Launch::Sync, [tell](const QFuture<Health> &ended) {
            tell(ended.resultCount() > 0 ? ended.result() : Health::unknown());
        });
        // A checker that gives up without a verdict leaves the health unknown.
        probe.toldInAnyCase = probe.told.onCanceled([tell] { tell(Health::unknown()); });
        m_probes.push_back(std::move(probe));
        ++m_outstanding;
    }
}

} // namespace portolan
