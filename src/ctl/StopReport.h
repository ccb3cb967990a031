#pragma once

#include "Service.h"

#include <QList>

#include <functional>

namespace portolan {

/// Stopping servers, and reporting what comes of it on standard output and standard error.
namespace StopReport {

/// Stops `services`, each process once, and waits until they have ended. Since they were listed their process
/// ids can have gone to other processes: after handles to the processes have been opened, `rescan` is called,
/// and only what it still lists is stopped. Blocks for at most the kill grace period and the time that a
/// killed process may take. Returns whether all of them have ended.
[[nodiscard]] bool stopAll(const QList<Service> &services, const std::function<QList<Service>()> &rescan);

} // namespace StopReport

} // namespace portolan
