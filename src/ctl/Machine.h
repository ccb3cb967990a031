// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>

namespace portolan {

/// A machine whose servers are listed: this one, or another. Main thread.
class Machine : public QObject
{
    Q_OBJECT

public:
    /// Its servers as last seen, in any order.
    [[nodiscard]] virtual QList<ListedService> services() const = 0;
    /// When that was; invalid before.
    [[nodiscard]] virtual QDateTime lastUpdated() const = 0;
    /// One harmless line that says why it does not answer; empty while it does.
    [[nodiscard]] virtual QString problem() const { return {}; }

    /// Looks once.
    virtual void look() = 0;
    /// Looks now and, until the end of this object, again and again.
    virtual void watch() = 0;

    /// Tells the server's process to end, and kills it if need be. Calls `report` later, once, with a few
    /// harmless words on what came of it and whether the process has ended.
    using Report = std::function<void(const QString &text, bool hasEnded)>;
    virtual void stop(const Service &service, const Report &report) = 0;

    /// Calls `use` with an address at which this machine reaches the server, or with an empty one and the
    /// reason, a harmless line, why there is none; with that later too, if the connection ends.
    using UseAddress = std::function<void(const QString &address, const QString &reason)>;
    virtual void reach(const Service &service, const UseAddress &use) = 0;

Q_SIGNALS:
    /// Something that the functions above tell has changed.
    void changed();
    /// It has been looked at, or does not answer.
    void looked();
};

} // namespace portolan
