// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

namespace portolan {

/// Prevents that the click on the icon which closes the popover opens it again. A panel that takes the focus
/// on a click makes the popover close before the activation of the icon arrives.
class ReopenGuard
{
public:
    using Clock = std::chrono::steady_clock;

    /// How long after the loss of focus an activation still counts as part of the same click.
    static constexpr std::chrono::milliseconds interval{300};

    /// Call it when the popover has closed because it lost the focus.
    void closedByFocusLoss(Clock::time_point now);
    /// Whether the activation at `now` belongs to the click that closed the popover; true at most once per
    /// call of closedByFocusLoss().
    [[nodiscard]] bool shouldIgnore(Clock::time_point now);

private:
    std::optional<Clock::time_point> m_focusLostAt;
};

} // namespace portolan
