#include "ListMerge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <ostream>
#include <random>

namespace portolan {

using ListMerge::newRow;
using ListMerge::Step;
using Kind = ListMerge::Step::Kind;

void PrintTo(const Step &step, std::ostream *out)
{
    const char *names[] = {"remove", "insert", "move"};
    *out << names[int(step.kind)] << ' ' << step.row << '+' << step.count << " other " << step.other;
}

namespace {

/// Carries the steps out on the rows 0, 1, 2 ...; new rows appear as -1 - their number in the wanted list.
std::vector<int> carriedOut(int oldCount, const std::vector<Step> &steps)
{
    std::vector<int> rows(oldCount);
    std::iota(rows.begin(), rows.end(), 0);
    for (const Step &step : steps) {
        const auto begin = rows.begin() + step.row;
        if (step.kind == Kind::remove) {
            rows.erase(begin, begin + step.count);
        } else if (step.kind == Kind::insert) {
            std::vector<int> fresh(step.count);
            for (int i = 0; i < step.count; ++i)
                fresh[i] = -1 - (step.other + i);
            rows.insert(begin, fresh.begin(), fresh.end());
        } else if (step.other < step.row) {
            std::rotate(rows.begin() + step.other, begin, begin + step.count);
        } else {
            std::rotate(begin, begin + step.count, rows.begin() + step.other);
        }
    }
    return rows;
}

std::vector<int> wantedRows(const std::vector<int> &origins)
{
    std::vector<int> rows(origins.size());
    for (size_t i = 0; i < origins.size(); ++i)
        rows[i] = origins[i] == newRow ? -1 - int(i) : origins[i];
    return rows;
}

/// The length of the longest increasing subsequence, the slow and obvious way.
int longestIncreasing(const std::vector<int> &values)
{
    std::vector<int> best;
    int longest = 0;
    for (size_t i = 0; i < values.size(); ++i) {
        int here = 1;
        for (size_t j = 0; j < i; ++j) {
            if (values[j] < values[i])
                here = std::max(here, best[j] + 1);
        }
        best.push_back(here);
        longest = std::max(longest, here);
    }
    return longest;
}

} // namespace

struct Merge
{
    const char *name;
    int oldCount;
    std::vector<int> origins;
    std::vector<Step> steps;
};

class ListMergeSteps : public testing::TestWithParam<Merge>
{};

TEST_P(ListMergeSteps, AreTheFewest)
{
    EXPECT_EQ(ListMerge::steps(GetParam().oldCount, GetParam().origins), GetParam().steps);
    EXPECT_EQ(carriedOut(GetParam().oldCount, GetParam().steps), wantedRows(GetParam().origins));
}

INSTANTIATE_TEST_SUITE_P(
    Lists, ListMergeSteps,
    testing::Values(Merge{"nothing", 0, {}, {}}, Merge{"same", 3, {0, 1, 2}, {}},
                    Merge{"first", 0, {newRow, newRow}, {{Kind::insert, 0, 2, 0}}},
                    Merge{"cleared", 3, {}, {{Kind::remove, 0, 3}}},
                    Merge{"removedInTwoPlaces", 5, {0, 2}, {{Kind::remove, 3, 2}, {Kind::remove, 1, 1}}},
                    Merge{"insertedInTwoPlaces",
                          2,
                          {newRow, 0, newRow, newRow, 1},
                          {{Kind::insert, 0, 1, 0}, {Kind::insert, 2, 2, 2}}},
                    Merge{"toTheTop", 4, {2, 0, 1, 3}, {{Kind::move, 2, 1, 0}}},
                    Merge{"toTheEnd", 4, {1, 2, 3, 0}, {{Kind::move, 0, 1, 4}}},
                    Merge{"blockUp", 5, {3, 4, 0, 1, 2}, {{Kind::move, 3, 2, 0}}},
                    Merge{"replaced", 3, {0, newRow, 2}, {{Kind::remove, 1, 1}, {Kind::insert, 1, 1, 1}}}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(ListMerge, ReachesEveryListWithTheFewestMovedRows)
{
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const int oldCount = int(random() % 12);
        std::vector<int> origins(oldCount);
        std::iota(origins.begin(), origins.end(), 0);
        std::ranges::shuffle(origins, random);
        origins.resize(oldCount ? random() % (oldCount + 1) : 0);
        const std::vector<int> kept = origins;
        for (int fresh = int(random() % 5); fresh > 0; --fresh)
            origins.insert(origins.begin() + int(random() % (origins.size() + 1)), newRow);

        const std::vector<Step> steps = ListMerge::steps(oldCount, origins);
        ASSERT_EQ(carriedOut(oldCount, steps), wantedRows(origins)) << round;
        int moved = 0;
        for (const Step &step : steps) {
            moved += step.kind == Kind::move ? step.count : 0;
            ASSERT_TRUE(step.kind != Kind::move || step.other < step.row ||
                        step.other > step.row + step.count);
        }
        ASSERT_EQ(moved, int(kept.size()) - longestIncreasing(kept)) << round;
    }
}

} // namespace portolan
