// SPDX-License-Identifier: MIT
#include "ProcessIdentity.h"

#include "ProcFs.h"
#include "ProcessStat.h"

namespace portolan {

std::optional<ProcessIdentity> ProcessIdentity::of(qint32 pid)
{
    char buffer[1024];
    const auto text = ProcFs::readInto(buffer, ProcFs::Path(pid, "stat").text());
    const auto stat = text ? parseProcessStat(*text) : std::nullopt;
    return stat ? std::optional(ProcessIdentity{pid, stat->startTicks}) : std::nullopt;
}

} // namespace portolan
