// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace portolan {

/// Formats the time since the last update.
class RelativeTime : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// "Updated just now", "Updated 5s ago" or "Updated 120m ago" (minutes are the largest unit); empty for
    /// an invalid `lastUpdated`. A time in the future counts as now.
    Q_INVOKABLE [[nodiscard]] static QString sinceUpdate(const QDateTime &lastUpdated);
};

} // namespace portolan
