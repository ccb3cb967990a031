// SPDX-License-Identifier: MIT
#include "UnreapedChildren.h"

namespace portolan {

void UnreapedChildren::add(ChildProcess child)
{
    const std::lock_guard lock(m_mutex);
    m_children.push_back(std::move(child));
}

void UnreapedChildren::reap()
{
    const std::lock_guard lock(m_mutex);
    m_children.remove_if([](ChildProcess &child) { return child.wait(QDeadlineTimer(0)); });
}

} // namespace portolan
