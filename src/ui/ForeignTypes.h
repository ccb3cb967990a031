// SPDX-License-Identifier: MIT
#pragma once

// Registers types of other libraries with QML.

#include "LoginItem.h"
#include "Service.h"
#include "ServiceActions.h"
#include "ServiceStore.h"
#include "SortOrder.h"
#include "VisibleServicesModel.h"

#include <QtQml/qqml.h> // declares QML_FOREIGN

namespace portolan {

struct ServiceForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::Service)
    QML_VALUE_TYPE(service)
};

struct FrameworkForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::Framework)
    QML_VALUE_TYPE(framework)
};

struct HealthForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::Health)
    QML_VALUE_TYPE(health)
};

struct ProcessStatsForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::ProcessStats)
    QML_VALUE_TYPE(processStats)
};

struct SortOrderForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::SortOrder)
    QML_VALUE_TYPE(sortOrder)
};

struct ServiceStoreForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::ServiceStore)
    QML_NAMED_ELEMENT(ServiceStore)
    QML_UNCREATABLE("There is one, handed to the views by the program")
};

struct ServiceActionsForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::ServiceActions)
    QML_NAMED_ELEMENT(ServiceActions)
    QML_UNCREATABLE("There is one, handed to the views by the program")
};

struct LoginItemForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::LoginItem)
    QML_NAMED_ELEMENT(LoginItem)
    QML_UNCREATABLE("There is one, handed to the views by the program")
};

struct VisibleServicesModelForeign
{
    Q_GADGET
    QML_FOREIGN(portolan::VisibleServicesModel)
    QML_NAMED_ELEMENT(VisibleServicesModel)
};

} // namespace portolan
