// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessIdentity.h"
#include "Service.h"

#include <QHash>
#include <QList>

namespace portolan {

/// Stopping servers, and reporting what comes of it on standard output and standard error.
namespace StopReport {

/// Stops `services`, whose processes are `identities`, each process once, and waits until they have ended.
/// A process that got the pid of one of them since they were listed is left alone. Blocks for at most the
/// kill grace period and the time that a killed process may take. Returns whether all of them have ended.
[[nodiscard]] bool stopAll(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities);

} // namespace StopReport

} // namespace portolan
