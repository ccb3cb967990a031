// SPDX-License-Identifier: MIT
#include "SystemSource.h"

#include "KernelSource.h"
#include "ScopedEnvironment.h"
#include "ToolSource.h"

#include <gtest/gtest.h>

namespace portolan {

TEST(SystemSource, IsTheKernel)
{
    const ScopedEnvironment unset("PORTOLAN_TOOLS", {});
    EXPECT_TRUE(dynamic_cast<KernelSource *>(SystemSource::make().get()));
}

TEST(SystemSource, IsTheToolsWhenTheEnvironmentSaysSo)
{
    const ScopedEnvironment external("PORTOLAN_TOOLS", "external");
    EXPECT_TRUE(dynamic_cast<ToolSource *>(SystemSource::make().get()));
}

} // namespace portolan
