#pragma once

#include <vector>

namespace portolan {

/// How one list of rows becomes another: the fewest removes, inserts and moves of rows, in an order in which
/// they can be carried out one by one. Near-linear in the number of rows.
namespace ListMerge {

struct Step
{
    enum class Kind : unsigned char {
        remove, ///< the rows from `row` on go
        insert, ///< the wanted list's rows from `other` on come in before `row`
        move,   ///< the rows from `row` on go before `other`, which is counted before the move
    };
    Kind kind;
    int row;
    int count;
    int other = 0;

    friend bool operator==(const Step &, const Step &) = default;
};

constexpr int newRow = -1;

/// The steps from a list of `oldCount` rows to one whose every row is the old row `origins[i]`, each named at
/// most once, or `newRow`.
[[nodiscard]] std::vector<Step> steps(int oldCount, const std::vector<int> &origins);

} // namespace ListMerge

} // namespace portolan
