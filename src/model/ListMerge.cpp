#include "ListMerge.h"

#include <algorithm>

namespace portolan {

namespace {

using ListMerge::newRow;
using ListMerge::Step;

/// Sums of a changing sequence's beginnings, in logarithmic time (a Fenwick tree).
class RunningSums
{
public:
    explicit RunningSums(int size)
        : m_tree(size_t(size) + 1)
    {}

    void add(int index, int value)
    {
        for (size_t i = size_t(index) + 1; i < m_tree.size(); i += i & -i)
            m_tree[i] += value;
    }

    /// The sum of all values before `index`.
    int before(int index) const
    {
        int sum = 0;
        for (size_t i = size_t(index); i > 0; i -= i & -i)
            sum += m_tree[i];
        return sum;
    }

private:
    std::vector<int> m_tree;
};

/// Where rows are while others move. The rows that stay from the old list keep their numbered slots; what is
/// placed anew goes into the gap before a slot, behind what was placed there earlier.
class Places
{
public:
    explicit Places(int slots)
        : m_rows(2 * slots + 1)
    {
        for (int slot = 0; slot < slots; ++slot)
            m_rows.add(2 * slot + 1, 1);
    }

    int ofSlot(int slot) const { return m_rows.before(2 * slot + 1); }
    int endOfGap(int slot) const { return m_rows.before(2 * slot + 1); }
    void place(int slot, int count) { m_rows.add(2 * slot, count); }
    void vacate(int slot) { m_rows.add(2 * slot + 1, -1); }

private:
    RunningSums m_rows;
};

std::vector<bool> keptRows(int oldCount, const std::vector<int> &origins)
{
    std::vector<bool> kept(oldCount);
    for (const int origin : origins) {
        if (origin != newRow)
            kept[origin] = true;
    }
    return kept;
}

/// From the back, so that the rows in front keep their numbers.
void appendRemoves(std::vector<Step> &steps, const std::vector<bool> &kept)
{
    for (int end = int(kept.size()); end > 0;) {
        int row = end;
        while (row > 0 && !kept[row - 1])
            --row;
        if (row < end)
            steps.push_back({Step::Kind::remove, row, end - row});
        end = row - 1;
    }
}

/// For each wanted row its number among the old rows that are kept, or `newRow`.
std::vector<int> slotsOf(const std::vector<bool> &kept, const std::vector<int> &origins)
{
    std::vector<int> slotOfOld(kept.size());
    int slots = 0;
    for (size_t row = 0; row < kept.size(); ++row)
        slotOfOld[row] = kept[row] ? slots++ : newRow;
    std::vector<int> slotOfWanted(origins.size());
    std::ranges::transform(origins, slotOfWanted.begin(),
                           [&](int origin) { return origin == newRow ? newRow : slotOfOld[origin]; });
    return slotOfWanted;
}

/// Which wanted rows need not move: as many kept rows as are in the right order among themselves (a longest
/// increasing subsequence).
std::vector<bool> stayingRows(const std::vector<int> &slots)
{
    std::vector<int> ends; // ends[n]: the wanted row at the end of the best sequence of n + 1 rows
    std::vector<int> previous(slots.size(), -1);
    for (int row = 0; row < int(slots.size()); ++row) {
        if (slots[row] == newRow)
            continue;
        const auto longer =
            std::ranges::lower_bound(ends, slots[row], {}, [&](int end) { return slots[end]; });
        if (longer != ends.begin())
            previous[row] = *std::prev(longer);
        if (longer == ends.end())
            ends.push_back(row);
        else
            *longer = row;
    }
    std::vector<bool> stays(slots.size());
    for (int row = ends.empty() ? -1 : ends.back(); row >= 0; row = previous[row])
        stays[row] = true;
    return stays;
}

} // namespace

std::vector<Step> ListMerge::steps(int oldCount, const std::vector<int> &origins)
{
    std::vector<Step> steps;
    const std::vector<bool> kept = keptRows(oldCount, origins);
    appendRemoves(steps, kept);

    const std::vector<int> slots = slotsOf(kept, origins);
    const std::vector<bool> stays = stayingRows(slots);
    Places places(int(std::ranges::count(kept, true)));
    const int wanted = int(origins.size());
    int cursor = 0; // the slot before which the next row belongs
    for (int row = 0; row < wanted;) {
        if (stays[row]) {
            cursor = slots[row++] + 1;
            continue;
        }
        const int first = row;
        const int to = places.endOfGap(cursor);
        if (slots[row] == newRow) {
            while (row < wanted && slots[row] == newRow)
                ++row;
            steps.push_back({Step::Kind::insert, to, row - first, first});
        } else {
            const int from = places.ofSlot(slots[row]);
            while (row < wanted && slots[row] != newRow && !stays[row] &&
                   places.ofSlot(slots[row]) == from + row - first)
                ++row;
            for (int moved = first; moved < row; ++moved)
                places.vacate(slots[moved]);
            steps.push_back({Step::Kind::move, from, row - first, to});
        }
        places.place(cursor, row - first);
    }
    return steps;
}

} // namespace portolan
