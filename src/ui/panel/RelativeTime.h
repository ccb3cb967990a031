#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace portolan {

/// How long ago the list was brought up to date, in words.
class RelativeTime : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// "Updated just now", "Updated 5s ago" or "Updated 120m ago" (there is no larger unit); empty for an
    /// invalid `lastUpdated`. A moment in the future is just now.
    [[nodiscard]] static QString sinceUpdate(const QDateTime &lastUpdated, const QDateTime &now);
    /// The same, as of now.
    Q_INVOKABLE [[nodiscard]] static QString sinceUpdate(const QDateTime &lastUpdated);
};

} // namespace portolan
