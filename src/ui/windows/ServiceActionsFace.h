#pragma once

#include "Service.h"

#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// The actions on a service that the views call. The program passes SystemServiceActions; tests and the
/// gallery pass their own. Main thread.
class ServiceActionsFace : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(ServiceActions)
    QML_UNCREATABLE("Passed to the views by the program")

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
