// SPDX-License-Identifier: MIT
#pragma once

#include "Service.h"
#include "SortOrder.h"

#include <QCollator>
#include <QList>
#include <QSet>
#include <QString>

/// The list as it is shown: filtered by the search text, pinned services first, in the chosen order. Pure
/// functions.
namespace portolan::VisibleList {

struct Criteria
{
    QString searchText;
    QSet<qint64> pinnedPorts;
    SortOrder sortOrder;
};

/// Compares names by the rules of the user's locale, ignoring case.
[[nodiscard]] const QCollator &userCollator();

/// Whether `service` matches the search text.
[[nodiscard]] bool matches(const Service &service, const QString &searchText);

/// Whether `sortOrder` puts `a` before `b`, neither or both of which are pinned.
[[nodiscard]] bool precedes(const Service &a, const Service &b, SortOrder sortOrder,
                            const QCollator &collator = userCollator());

/// Those of `services` that match the search text, sorted. Services that the order does not separate keep
/// their relative order.
[[nodiscard]] QList<Service> of(const QList<Service> &services, const Criteria &criteria,
                                const QCollator &collator = userCollator());

/// Whether at least two of `services` match the search text, so that pins and order matter.
[[nodiscard]] bool hasOrder(const QList<Service> &services, const QString &searchText);

} // namespace portolan::VisibleList
