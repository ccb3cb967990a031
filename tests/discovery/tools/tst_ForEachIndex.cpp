// SPDX-License-Identifier: MIT
#include "ForEachIndex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace portolan {

class ForEachIndex : public testing::TestWithParam<int>
{};

TEST_P(ForEachIndex, CallsOncePerIndex)
{
    for (const qsizetype count : {0, 1, 2, 3, 100}) {
        std::vector<std::atomic<int>> calls(static_cast<size_t>(count));
        forEachIndex(count, GetParam(), [&](qsizetype index) { ++calls[size_t(index)]; });
        for (const std::atomic<int> &times : calls)
            EXPECT_EQ(times, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Workers, ForEachIndex, testing::Values(-1, 0, 1, 2, 4, 16));

TEST(ForEachIndexThreads, OneWorkerIsAPlainLoopOnTheCallersThread)
{
    const auto caller = std::this_thread::get_id();
    std::vector<qsizetype> order;
    forEachIndex(5, 1, [&](qsizetype index) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        order.push_back(index);
    });
    EXPECT_EQ(order, (std::vector<qsizetype>{0, 1, 2, 3, 4}));
}

TEST(ForEachIndexThreads, WorkersRunSideBySide)
{
    // Each call waits for the others: one after the other they would never end.
    std::atomic<int> present = 0;
    forEachIndex(3, 3, [&](qsizetype) {
        ++present;
        while (present < 3)
            std::this_thread::yield();
    });
    EXPECT_EQ(present, 3);
}

} // namespace portolan
