// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace portolan {

/// Runs the event loop until `condition` is true; returns false if it is not within 30 seconds.
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

/// Processes pending events, and those that they post.
inline void settle()
{
    for (int turn = 0; turn < 10; ++turn)
        QCoreApplication::processEvents();
}

} // namespace portolan
