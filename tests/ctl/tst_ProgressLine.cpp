#include "Printers.h"
#include "ProgressLine.h"
#include "SampleServices.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(ProgressLine, SaysWhatItWaitsFor)
{
    Service unasked = SampleServices::shop();
    unasked.health = Health::unknown();
    EXPECT_EQ(ProgressLine::text(true, {}), u"Looking for servers…"_s);
    EXPECT_EQ(ProgressLine::text(false, {unasked, SampleServices::shop(), SampleServices::api()}),
              u"Asking the servers… 2 of 3"_s);
}

} // namespace portolan
