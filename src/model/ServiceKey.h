// SPDX-License-Identifier: MIT
#pragma once

#include "Service.h"

#include <utility>

namespace portolan {

/// Identifies a service from one scan to the next: pid and port, as in its id but without a string.
using ServiceKey = std::pair<qint32, qint64>;

[[nodiscard]] inline ServiceKey keyOf(const Service &service)
{
    return {service.pid, service.port};
}

} // namespace portolan
