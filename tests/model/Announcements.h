// SPDX-License-Identifier: MIT
#pragma once

#include "ServiceStore.h"

#include <QObject>

namespace portolan {

/// Counts how often a store announces the change of a property.
class Announcements
{
public:
    Announcements(const ServiceStore &store, void (ServiceStore::*changed)())
        : m_connection(QObject::connect(&store, changed, &store, [this] { ++m_count; }))
    {}
    ~Announcements() { QObject::disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(Announcements)

    int count() const { return m_count; }

private:
    int m_count = 0;
    QMetaObject::Connection m_connection;
};

} // namespace portolan
