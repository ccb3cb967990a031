// SPDX-License-Identifier: MIT
#include "ContinuousTimer.h"

#include <algorithm>
#include <cstdint>

#include <sys/timerfd.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace portolan {

ContinuousTimer::ContinuousTimer()
    : m_clock(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK))
    , m_notifier(m_clock.get(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        std::uint64_t expirations = 0;
        // Nothing to read: it was stopped or restarted after the event loop saw it fire.
        if (read(m_clock.get(), &expirations, sizeof expirations) == sizeof expirations)
            Q_EMIT timeout();
    });
}

void ContinuousTimer::start(std::chrono::milliseconds interval)
{
    const auto delay = std::max<std::chrono::nanoseconds>(interval, 1ns); // zero would disarm it
    const auto seconds = std::chrono::floor<std::chrono::seconds>(delay);
    const itimerspec once{.it_interval = {},
                          .it_value = {.tv_sec = seconds.count(), .tv_nsec = (delay - seconds).count()}};
    timerfd_settime(m_clock.get(), 0, &once, nullptr);
}

void ContinuousTimer::stop()
{
    const itimerspec never{};
    timerfd_settime(m_clock.get(), 0, &never, nullptr);
}

} // namespace portolan

#include "moc_ContinuousTimer.cpp"
