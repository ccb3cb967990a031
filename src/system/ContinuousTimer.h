// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <chrono>

namespace portolan {

/// A timer that fires once, and counts the time that the machine spends suspended, which QTimer does not: one
/// that ran out meanwhile fires as soon as the machine is awake. It wakes no machine. Never early. Main
/// thread.
class ContinuousTimer : public QObject
{
    Q_OBJECT

public:
    ContinuousTimer();

    /// Fires once `interval` from now, instead of when it was to fire before.
    void start(std::chrono::milliseconds interval);
    /// It will not fire, not even where its time has run out already.
    void stop();

Q_SIGNALS:
    void timeout();

private:
    FileDescriptor m_clock;
    QSocketNotifier m_notifier;
};

} // namespace portolan
