#pragma once

// The types of other folders by the names that QML knows them by.

#include "Service.h"
#include "ServiceStore.h"
#include "SortOrder.h"
#include "VisibleServicesModel.h"

#include <QtQml/qqmlregistration.h> // declares QML_FOREIGN

struct ServiceForeign
{
    Q_GADGET
    QML_FOREIGN(Service)
    QML_VALUE_TYPE(service)
};

struct FrameworkForeign
{
    Q_GADGET
    QML_FOREIGN(Framework)
    QML_VALUE_TYPE(framework)
};

struct HealthForeign
{
    Q_GADGET
    QML_FOREIGN(Health)
    QML_VALUE_TYPE(health)
};

struct ProcessStatsForeign
{
    Q_GADGET
    QML_FOREIGN(ProcessStats)
    QML_VALUE_TYPE(processStats)
};

struct SortOrderForeign
{
    Q_GADGET
    QML_FOREIGN(SortOrder)
    QML_VALUE_TYPE(sortOrder)
};

struct ServiceStoreForeign
{
    Q_GADGET
    QML_FOREIGN(ServiceStore)
    QML_NAMED_ELEMENT(ServiceStore)
    QML_UNCREATABLE("There is one, handed to the views by the program")
};

struct VisibleServicesModelForeign
{
    Q_GADGET
    QML_FOREIGN(VisibleServicesModel)
    QML_NAMED_ELEMENT(VisibleServicesModel)
};
