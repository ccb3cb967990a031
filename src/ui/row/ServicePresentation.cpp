// SPDX-License-Identifier: MIT
#include "ServicePresentation.h"

#include "DisplayText.h"
#include "Theme.h"

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct StateStyle
{
    QString label;
    QColor color;
};

StateStyle styleOf(const Health &health)
{
    switch (health.state()) {
    case Health::State::healthy:
        return {u"Online"_s, Theme::online};
    case Health::State::checking:
        return {u"Checking"_s, Theme::pending};
    case Health::State::unreachable:
        return {u"Offline"_s, Theme::offline};
    case Health::State::unknown:
        break;
    }
    return {u"\u2014"_s, Theme::textFaint};
}

QString stateDescription(const Health &health)
{
    if (health.isHealthy())
        return u"online, "_s + ServicePresentation::responseTime(health);
    return health.state() == Health::State::unknown ? u"not checked"_s : styleOf(health).label.toLower();
}

} // namespace

QString ServicePresentation::address(const Service &service)
{
    return u"localhost:%1"_s.arg(service.port);
}

QColor ServicePresentation::accent(const Framework &framework)
{
    const SrgbColor accent = framework.accent();
    return {accent.red, accent.green, accent.blue};
}

QString ServicePresentation::stateLabel(const Health &health)
{
    return styleOf(health).label;
}

QColor ServicePresentation::stateColor(const Health &health)
{
    return styleOf(health).color;
}

QString ServicePresentation::responseTime(const Health &health)
{
    return health.isHealthy() ? u"%1 ms"_s.arg(health.ms()) : QString();
}

QString ServicePresentation::accessibleName(const Service &service, bool isPinned)
{
    return u"%1, %2, %3, %4%5"_s.arg(DisplayText::isolated(service.displayName), service.framework.rawValue(),
                                     address(service), stateDescription(service.health),
                                     isPinned ? u", pinned"_s : u""_s);
}

QString ServicePresentation::sinceUpdate(const QDateTime &lastUpdated)
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
