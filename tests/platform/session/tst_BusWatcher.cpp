#include "BusWatcher.h"
#include "Eventually.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

namespace portolan {

TEST(BusWatcher, IsToldOnceTheBusHasGone)
{
    PrivateBus bus;
    const BusWatcher loss(bus.connect());
    int occurrences = 0;
    QObject::connect(&loss, &BusWatcher::disconnected, [&] { ++occurrences; });

    bus.stop();

    EXPECT_TRUE(eventually([&] { return occurrences == 1; }));
}

} // namespace portolan
