// SPDX-License-Identifier: MIT
#include "ProcessIdentity.h"

#include "ProcessStat.h"

namespace portolan {

std::optional<ProcessIdentity> ProcessIdentity::of(qint32 pid)
{
    const auto stat = readProcessStat(pid);
    return stat ? std::optional(ProcessIdentity{pid, stat->startTicks}) : std::nullopt;
}

} // namespace portolan
