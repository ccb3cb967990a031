// SPDX-License-Identifier: MIT
#pragma once

#include "Service.h"

#include <QColor>
#include <QDateTime>
#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// The texts and colours for the values of a service and of the list.
class ServicePresentation : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// "localhost:3000".
    Q_INVOKABLE [[nodiscard]] static QString address(const portolan::Service &service);
    /// The colour of the framework's symbol.
    Q_INVOKABLE [[nodiscard]] static QColor accent(const portolan::Framework &framework);

    /// "Online", "Offline", "Checking", or an em dash if unknown.
    Q_INVOKABLE [[nodiscard]] static QString stateLabel(const portolan::Health &health);
    Q_INVOKABLE [[nodiscard]] static QColor stateColor(const portolan::Health &health);
    /// "12 ms"; empty unless healthy.
    Q_INVOKABLE [[nodiscard]] static QString responseTime(const portolan::Health &health);

    /// A description for assistive technology: name, framework, address, state, and whether it is pinned.
    Q_INVOKABLE [[nodiscard]] static QString accessibleName(const portolan::Service &service, bool isPinned);

    /// "Updated just now", "Updated 5s ago" or "Updated 120m ago" (minutes are the largest unit); empty for
    /// an invalid `lastUpdated`. A time in the future counts as now.
    Q_INVOKABLE [[nodiscard]] static QString sinceUpdate(const QDateTime &lastUpdated);
};

} // namespace portolan
