#include "Waits.h"

#include <utility>

namespace portolan {

Waits::~Waits()
{
    cancel();
}

void Waits::cancel()
{
    m_cancelled = true;
    // A coroutine that is resumed may end others, so the list is looked at anew each time.
    while (!m_suspended.empty())
        m_suspended.back()->wake();
}

Wait::~Wait()
{
    Q_ASSERT(!m_coroutine);
}

void Wait::suspend(std::coroutine_handle<> coroutine)
{
    Q_ASSERT(!m_coroutine);
    m_coroutine = coroutine;
    m_waits.m_suspended.push_back(this);
}

void Wait::wake()
{
    if (!m_coroutine)
        return;
    std::erase(m_waits.m_suspended, this);
    std::exchange(m_coroutine, nullptr).resume();
}

} // namespace portolan
