#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace portolan {

/// Runs the event loop until `condition` holds; false if it does not within half a minute.
[[nodiscard]] inline bool eventually(const std::function<bool()> &condition)
{
    const QDeadlineTimer limit(30'000);
    while (!condition()) {
        if (limit.hasExpired())
            return false;
        QEventLoop loop;
        QTimer::singleShot(2, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

/// Runs the event loop until nothing is left to do at once.
inline void settle()
{
    for (int turn = 0; turn < 10; ++turn)
        QCoreApplication::processEvents();
}

} // namespace portolan
