#include "BusWatcher.h"

namespace portolan {

using namespace Qt::StringLiterals;

BusWatcher::BusWatcher(QDBusConnection bus)
{
    // The last that arrives on a connection, made up on this side of it.
    bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
                this, SIGNAL(disconnected()));
}

} // namespace portolan
