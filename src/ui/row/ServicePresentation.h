#pragma once

#include "Service.h"

#include <QColor>
#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// What the values of a service look like.
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

    /// "Online", "Offline", "Checking" or an em dash.
    Q_INVOKABLE [[nodiscard]] static QString stateLabel(const portolan::Health &health);
    Q_INVOKABLE [[nodiscard]] static QColor stateColor(const portolan::Health &health);
    /// "12 ms"; empty unless healthy.
    Q_INVOKABLE [[nodiscard]] static QString responseTime(const portolan::Health &health);

    /// The service in one sentence, for those who listen to the list: name, framework, address, state.
    Q_INVOKABLE [[nodiscard]] static QString spoken(const portolan::Service &service, bool isPinned);
};

} // namespace portolan
