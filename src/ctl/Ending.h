#pragma once

#include "Service.h"

#include <QList>

/// The end of servers, from the signal to the last word about it.
namespace Ending {

/// Stops `services`, each process once, and waits until they have ended, saying what goes on. Blocks for as
/// long as a stubborn server is given, and a killed one takes. Whether all of them ended.
[[nodiscard]] bool of(const QList<Service> &services);

} // namespace Ending
