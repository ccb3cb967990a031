// SPDX-License-Identifier: MIT
#include "ReopenGuard.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace std::chrono_literals;

namespace {
const ReopenGuard::Clock::time_point Now = ReopenGuard::Clock::time_point() + 24h;
}

TEST(ReopenGuard, AcceptsAClickWithoutFocusLoss)
{
    ReopenGuard guard;
    EXPECT_FALSE(guard.shouldIgnore(Now));
}

TEST(ReopenGuard, IgnoresTheClickThatTookTheFocus)
{
    ReopenGuard guard;
    guard.closedByFocusLoss(Now);
    EXPECT_TRUE(guard.shouldIgnore(Now + 200ms));
}

TEST(ReopenGuard, IgnoresOneClickOnly)
{
    ReopenGuard guard;
    guard.closedByFocusLoss(Now);
    EXPECT_TRUE(guard.shouldIgnore(Now + 100ms));
    EXPECT_FALSE(guard.shouldIgnore(Now + 150ms));
}

TEST(ReopenGuard, AcceptsALaterClick)
{
    ReopenGuard guard;
    guard.closedByFocusLoss(Now);
    EXPECT_FALSE(guard.shouldIgnore(Now + ReopenGuard::interval));
}

TEST(ReopenGuard, CountsFromTheLastFocusLoss)
{
    ReopenGuard guard;
    guard.closedByFocusLoss(Now);
    guard.closedByFocusLoss(Now + 1s);
    EXPECT_TRUE(guard.shouldIgnore(Now + 1200ms));
}

} // namespace portolan
