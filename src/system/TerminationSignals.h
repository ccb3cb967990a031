// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace portolan {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal, so that the program ends in its own order, and lets a
/// terminal that Control-S has stopped go on. A signal that was ignored when the program started stays
/// ignored. One object at a time; main thread.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

    /// Readable from the first such signal on, for those who wait elsewhere than in the event loop. -1 where
    /// no object is there.
    [[nodiscard]] static int descriptor();
    /// Whether such a signal came, though the event loop may not know yet.
    [[nodiscard]] static bool isPending();

Q_SIGNALS:
    /// The first of these signals came: its number. Later ones have nothing to add.
    void received(int signal);

private:
    QSocketNotifier m_notifier;
};

} // namespace portolan
