#pragma once

#include <chrono>
#include <optional>

namespace portolan {

/// Tells a click that opens the popover from the click that has just closed it. Where a panel takes the focus
/// when its icon is clicked, the popover closes first, and the activation that follows would open it again.
class ReopenGuard
{
public:
    using Clock = std::chrono::steady_clock;

    /// How long after a loss of focus an activation is still taken for the same click.
    static constexpr std::chrono::milliseconds Interval{300};

    /// The popover closed because it lost the focus.
    void closedByFocusLoss(Clock::time_point now);
    /// Whether the activation at `now` belongs to the click that closed the popover. True at most once per
    /// loss.
    [[nodiscard]] bool shouldIgnore(Clock::time_point now);

private:
    std::optional<Clock::time_point> m_focusLostAt;
};

} // namespace portolan
