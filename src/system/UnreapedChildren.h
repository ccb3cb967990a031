// SPDX-License-Identifier: MIT
#pragma once

#include "ChildProcess.h"

#include <list>
#include <mutex>
#include <utility>

namespace portolan {

/// Children that were killed but have not ended yet, for instance because they are blocked in a system call.
/// Any thread.
class UnreapedChildren
{
public:
    void add(ChildProcess child)
    {
        const std::lock_guard lock(m_mutex);
        m_children.push_back(std::move(child));
    }

    /// Reaps those that have ended.
    void reap()
    {
        const std::lock_guard lock(m_mutex);
        m_children.remove_if([](ChildProcess &child) { return child.wait(QDeadlineTimer(0)); });
    }

private:
    std::mutex m_mutex;
    std::list<ChildProcess> m_children;
};

} // namespace portolan
