// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>

namespace portolan {

/// Calls `function` once for each index below `count` and returns when all calls have. Up to `workers`
/// threads, the caller's one of them, take the indices in ascending order; with one worker it is a plain
/// loop.
void forEachIndex(qsizetype count, int workers, const std::function<void(qsizetype)> &function);

} // namespace portolan
