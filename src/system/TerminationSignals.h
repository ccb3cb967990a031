// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace portolan {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal, so that the program can end in an orderly way, and
/// resumes a terminal that Control-S has stopped. A signal that was ignored when the program started stays
/// ignored. One object at a time; main thread.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

    /// Readable from the first such signal on until the object is destroyed, for code that waits outside the
    /// event loop. -1 before the first object.
    [[nodiscard]] static int descriptor();
    /// Whether such a signal has arrived, even if the event loop has not handled it yet.
    [[nodiscard]] static bool isPending();

Q_SIGNALS:
    /// The first of these signals arrived: its number. Later ones are not reported.
    void received(int signal);

private:
    QSocketNotifier m_notifier;
};

} // namespace portolan
