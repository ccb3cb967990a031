// SPDX-License-Identifier: MIT
#include "BusWatcher.h"

namespace portolan {

using namespace Qt::StringLiterals;

BusWatcher::BusWatcher(QDBusConnection bus)
{
    // libdbus itself emits this signal as the last message of a connection.
    bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
                this, SIGNAL(disconnected()));
}

} // namespace portolan
