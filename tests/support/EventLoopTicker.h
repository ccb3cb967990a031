// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

namespace portolan {

/// Counts the milliseconds in which the event loop was not blocked.
class EventLoopTicker
{
public:
    EventLoopTicker()
    {
        m_timer.callOnTimeout(&m_timer, [this] { ++m_ticks; });
        m_timer.start(1);
    }

    int ticks() const { return m_ticks; }

private:
    QTimer m_timer;
    int m_ticks = 0;
};

} // namespace portolan
