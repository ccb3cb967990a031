#include "BusLoss.h"

namespace portolan {

using namespace Qt::StringLiterals;

BusLoss::BusLoss(QDBusConnection bus)
{
    // The last that arrives on a connection, made up on this side of it.
    bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
                this, SIGNAL(occurred()));
}

} // namespace portolan
