#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

/// Ticks as long as the event loop runs, and knows its longest silence.
class EventLoopTicker
{
public:
    EventLoopTicker()
    {
        m_sinceTick.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            ++m_ticks;
            m_longestSilence = std::max(m_longestSilence, m_sinceTick.restart());
        });
        m_timer.start(1);
    }

    int ticks() const { return m_ticks; }
    /// In milliseconds, between two ticks.
    qint64 longestSilence() const { return m_longestSilence; }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    int m_ticks = 0;
    qint64 m_longestSilence = 0;
};
