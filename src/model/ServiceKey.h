// SPDX-License-Identifier: MIT
#pragma once

#include "Service.h"

#include <utility>

namespace portolan {

/// What a service is known by from one scan to the next: pid and port, its id without making a text of it.
using ServiceKey = std::pair<qint32, qint64>;

[[nodiscard]] inline ServiceKey keyOf(const Service &service)
{
    return {service.pid, service.port};
}

} // namespace portolan
