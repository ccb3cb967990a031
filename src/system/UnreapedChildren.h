// SPDX-License-Identifier: MIT
#pragma once

#include "ChildProcess.h"

#include <list>
#include <mutex>

namespace portolan {

/// Children that were killed but have not ended yet, as one does not that the kernel holds in a system call.
/// Any thread.
class UnreapedChildren
{
public:
    void add(ChildProcess child);
    /// Reaps those that have ended.
    void reap();

private:
    std::mutex m_mutex;
    std::list<ChildProcess> m_children;
};

} // namespace portolan
