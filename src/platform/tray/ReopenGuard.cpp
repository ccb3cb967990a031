// SPDX-License-Identifier: MIT
#include "ReopenGuard.h"

#include <utility>

namespace portolan {

void ReopenGuard::closedByFocusLoss(Clock::time_point now)
{
    m_focusLostAt = now;
}

bool ReopenGuard::shouldIgnore(Clock::time_point now)
{
    const auto lostAt = std::exchange(m_focusLostAt, std::nullopt);
    return lostAt && now - *lostAt < interval;
}

} // namespace portolan
