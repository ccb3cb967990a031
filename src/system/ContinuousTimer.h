// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <chrono>

namespace portolan {

/// A single-shot timer that also counts the time that the machine spends suspended, which QTimer does not:
/// one that expired meanwhile fires as soon as the machine is awake. It does not wake the machine, and never
/// fires early. Main thread.
class ContinuousTimer : public QObject
{
    Q_OBJECT

public:
    ContinuousTimer();

    /// Fires `interval` from now. Replaces an earlier start().
    void start(std::chrono::milliseconds interval);
    /// It will not fire, even if it has expired already.
    void stop();

Q_SIGNALS:
    void timeout();

private:
    FileDescriptor m_clock;
    QSocketNotifier m_notifier;
};

} // namespace portolan
