#include "HealthChecker.h"

#include "HealthPromise.h"
#include "ProbeLoop.h"

#include <limits>

namespace portolan {

QFuture<Health> HealthChecker::check(qint64 port)
{
    if (port < 0 || port > std::numeric_limits<quint16>::max()) {
        HealthPromise promise;
        promise.keep(Health::unknown());
        return promise.future();
    }
    static ProbeLoop loop;
    return loop.probe(quint16(port));
}

} // namespace portolan
