#include "Pause.h"

#include <utility>

namespace portolan {

Pause::Pause(Waits &waits, std::chrono::milliseconds length, std::stop_token stop)
    : Wait(waits)
    , m_stop(std::move(stop))
{
    // A precise timer wakes the program as often as a coarse one, but never early.
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    m_timer.setInterval(length);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, Waker{this});
}

void Pause::begin()
{
    m_onStop.emplace(m_stop, Waker{this});
    m_timer.start();
}

bool Pause::result()
{
    m_timer.stop();
    m_onStop.reset();
    return !isReady();
}

} // namespace portolan
