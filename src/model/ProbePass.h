#pragma once

#include "Health.h"
#include "Mailbox.h"
#include "ServiceKey.h"

#include <QFuture>
#include <QList>

#include <functional>
#include <optional>
#include <vector>

namespace portolan {

/// One probe of every service, all at once; their results in the order of their completion.
class ProbePass
{
public:
    using Checker = std::function<QFuture<Health>(qint64 port)>;

    struct Result
    {
        ServiceKey key;
        Health health;
    };

    explicit ProbePass(Waits &waits)
        : m_results(waits)
    {}
    /// Cancels the probes whose results nobody waits for any more.
    ~ProbePass();
    Q_DISABLE_COPY_MOVE(ProbePass)

    /// Starts one probe per service, in list order.
    void start(QList<Service> services, const Checker &check);

    /// Whether results are still to come.
    [[nodiscard]] bool isUnderWay() const { return m_outstanding > 0; }
    /// To be awaited while the pass is under way; gives nothing when the waits were cancelled.
    [[nodiscard]] Awaiter<Mailbox<Result>> next()
    {
        --m_outstanding;
        return m_results.next();
    }

private:
    /// The outcome and what follows it. All of it is kept, since a future that is cancelled looks at what
    /// follows it even when that has been.
    struct PendingProbe
    {
        QFuture<Health> outcome;
        QFuture<void> told;
        QFuture<void> toldInAnyCase;
    };

    Mailbox<Result> m_results;
    std::vector<PendingProbe> m_probes;
    qsizetype m_outstanding = 0;
};

} // namespace portolan
