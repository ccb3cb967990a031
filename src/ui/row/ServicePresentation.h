#pragma once

#include "Service.h"

#include <QColor>
#include <QObject>
#include <QtQmlIntegration>

/// What the values of a service look like.
class ServicePresentation : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// "localhost:3000".
    Q_INVOKABLE [[nodiscard]] static QString address(const Service &service);
    /// The colour of the framework's symbol.
    Q_INVOKABLE [[nodiscard]] static QColor accent(const Framework &framework);

    /// "Online", "Offline", "Checking" or an em dash.
    Q_INVOKABLE [[nodiscard]] static QString stateLabel(const Health &health);
    Q_INVOKABLE [[nodiscard]] static QColor stateColor(const Health &health);
    /// "12 ms"; empty unless healthy.
    Q_INVOKABLE [[nodiscard]] static QString responseTime(const Health &health);

    /// The service in one sentence, for those who listen to the list: name, framework, address, state.
    Q_INVOKABLE [[nodiscard]] static QString spoken(const Service &service, bool isPinned);
};
