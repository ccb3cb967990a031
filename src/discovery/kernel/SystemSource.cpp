// SPDX-License-Identifier: MIT
#include "SystemSource.h"

#include "KernelSource.h"
#include "ProcFs.h"
#include "ToolSource.h"

#include <QtGlobal>

namespace portolan {

std::unique_ptr<ProcessSource> SystemSource::make()
{
    if (qgetenv("PORTOLAN_TOOLS") == "external" || !ProcFs::isReadable())
        return std::make_unique<ToolSource>();
    return std::make_unique<KernelSource>();
}

} // namespace portolan
