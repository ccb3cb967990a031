#pragma once

#include "ProcessIdentity.h"
#include "Service.h"

#include <QHash>
#include <QList>

#include <functional>

namespace portolan {

/// The end of servers, from the signal to the last word about it.
namespace Ending {

/// Stops `services`, each process once, and waits until they have ended, saying what goes on. Since they were
/// listed their ids can have gone to other processes: only what `lookAgain` lists once more, after they have
/// been taken hold of, is told to end. Blocks for as long as a stubborn server is given, and a killed one
/// takes. Whether all of them have ended.
[[nodiscard]] bool of(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities,
                      const std::function<QList<Service>()> &lookAgain);

} // namespace Ending

} // namespace portolan
