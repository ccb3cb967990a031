#include "BusLoss.h"
#include "Eventually.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

namespace portolan {

TEST(BusLoss, IsToldOnceTheBusHasGone)
{
    PrivateBus bus;
    const BusLoss loss(bus.connect());
    int occurrences = 0;
    QObject::connect(&loss, &BusLoss::occurred, [&] { ++occurrences; });

    bus.stop();

    EXPECT_TRUE(eventually([&] { return occurrences == 1; }));
}

} // namespace portolan
