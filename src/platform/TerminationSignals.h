#pragma once

#include <QObject>
#include <QSocketNotifier>

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal, so that the program ends in its own order. A signal
/// that was ignored when the program started stays ignored. One object at a time.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    QSocketNotifier m_notifier;
};
