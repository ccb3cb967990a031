#pragma once

#include <QObject>

namespace portolan {

/// Tells the thread it lives in that a Mailbox is no longer empty.
class Doorbell : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void rung();
};

} // namespace portolan
