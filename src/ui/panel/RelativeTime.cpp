// SPDX-License-Identifier: MIT
#include "RelativeTime.h"

namespace portolan {

using namespace Qt::StringLiterals;

QString RelativeTime::sinceUpdate(const QDateTime &lastUpdated)
{
    if (!lastUpdated.isValid())
        return {};
    const qint64 seconds = lastUpdated.msecsTo(QDateTime::currentDateTimeUtc()) / 1000;
    if (seconds <= 2)
        return u"Updated just now"_s;
    if (seconds < 60)
        return u"Updated %1s ago"_s.arg(seconds);
    return u"Updated %1m ago"_s.arg(seconds / 60);
}

} // namespace portolan
