// SPDX-License-Identifier: MIT
#include "ForEachIndex.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace portolan {

void forEachIndex(qsizetype count, int workers, const std::function<void(qsizetype)> &function)
{
    std::atomic<qsizetype> next = 0;
    const auto work = [&] {
        for (qsizetype index = next++; index < count; index = next++)
            function(index);
    };

    std::vector<std::jthread> helpers;
    const qsizetype wanted = std::min<qsizetype>(workers, count) - 1;
    try {
        while (qsizetype(helpers.size()) < wanted)
            helpers.emplace_back(work);
    } catch (const std::system_error &) {
        // The system gives no more threads: those that there are do it all.
    }
    work();
}

} // namespace portolan
