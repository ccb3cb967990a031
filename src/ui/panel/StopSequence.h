#pragma once

#include "Service.h"
#include "ServiceActionsFace.h"
#include "ServiceStore.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration>

namespace portolan {

/// What a stop consists of: the process is signalled, its row goes at once, and once the process has had time
/// to exit, a scan shows what became of it. Each stop has a scan of its own, which does not need this object
/// any more. Main thread.
class StopSequence : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(portolan::ServiceStore *store MEMBER m_store REQUIRED FINAL)
    Q_PROPERTY(portolan::ServiceActionsFace *actions MEMBER m_actions REQUIRED FINAL)

public:
    using QObject::QObject;

    Q_INVOKABLE void run(const portolan::Service &service);

private:
    QPointer<ServiceStore> m_store;
    QPointer<ServiceActionsFace> m_actions;
};

} // namespace portolan
