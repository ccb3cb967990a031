// SPDX-License-Identifier: MIT
#include "BusWatcher.h"
#include "Eventually.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

namespace portolan {

TEST(BusWatcher, ReportsTheLossOfTheBusOnce)
{
    PrivateBus bus;
    const BusWatcher watcher(bus.connect());
    int losses = 0;
    QObject::connect(&watcher, &BusWatcher::disconnected, [&] { ++losses; });

    bus.stop();

    EXPECT_TRUE(eventually([&] { return losses == 1; }));
}

} // namespace portolan
