#pragma once

#include "ProcessIdentity.h"
#include "Service.h"

#include <QHash>
#include <QList>

#include <functional>

namespace portolan {

/// Stopping servers, and reporting what comes of it on standard output and standard error.
namespace StopReport {

/// Stops `services`, whose processes are `identities`, each process once, and waits until they have ended.
/// After handles to the processes have been opened, `rescan` is called, and only what it still lists is
/// stopped. Blocks for at most the kill grace period and the time that a
/// killed process may take. Returns whether all of them have ended.
[[nodiscard]] bool stopAll(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities,
                           const std::function<QList<Service>()> &rescan);

} // namespace StopReport

} // namespace portolan
