#include "ProcessStats.h"

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 minute = 60;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

} // namespace

QString ProcessStats::uptimeText() const
{
    const qint64 s = uptimeSeconds;
    if (s < minute)
        return QString::number(s) + u's';
    if (s < hour)
        return QString::number(s / minute) + u'm';
    if (s < day)
        return QString::number(s / hour) + u"h "_s + QString::number(s / minute % 60) + u'm';
    return QString::number(s / day) + u"d "_s + QString::number(s / hour % 24) + u'h';
}

QString ProcessStats::cpuText() const
{
    return QString::asprintf("%.0f%%", cpuPercent);
}

QString ProcessStats::memoryText() const
{
    if (memoryMB >= 1024.0)
        return QString::asprintf("%.1f GB", memoryMB / 1024.0);
    return QString::asprintf("%.0f MB", memoryMB);
}

} // namespace portolan
