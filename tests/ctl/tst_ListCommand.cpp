#include "ListCommand.h"
#include "Printers.h"
#include "SampleServices.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(ListCommand, SaysWhatItWaitsFor)
{
    Service unasked = SampleServices::shop();
    unasked.health = Health::unknown();
    EXPECT_EQ(ListCommand::progressText(true, {}), u"Looking for servers…"_s);
    EXPECT_EQ(ListCommand::progressText(false, {unasked, SampleServices::shop(), SampleServices::api()}),
              u"Asking the servers… 2 of 3"_s);
}

} // namespace portolan
