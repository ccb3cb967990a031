#pragma once

#include "Service.h"

#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// What the views may ask to be done to a service. The program hands them SystemServiceActions, a test or the
/// gallery its own. Main thread.
class ServiceActionsFace : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(ServiceActions)
    QML_UNCREATABLE("Handed to the views by the program")

public:
    using QObject::QObject;

    Q_INVOKABLE virtual void stop(const portolan::Service &service) = 0;
    Q_INVOKABLE virtual void openInBrowser(const portolan::Service &service) = 0;
    Q_INVOKABLE virtual void copyURL(const portolan::Service &service) = 0;
    Q_INVOKABLE virtual void copyPort(const portolan::Service &service) = 0;
    Q_INVOKABLE virtual void revealInFinder(const portolan::Service &service) = 0;
    Q_INVOKABLE virtual void openInEditor(const portolan::Service &service) = 0;
    Q_INVOKABLE virtual void openInTerminal(const portolan::Service &service) = 0;
};

} // namespace portolan
