#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <chrono>

/// Runs the event loop until `condition` holds, for at most half a minute; whether it came to hold.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition)
{
    using namespace std::chrono_literals;
    const QDeadlineTimer deadline(30s);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return condition();
}
