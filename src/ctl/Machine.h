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
    /// Its servers as of the last refresh, in any order.
    [[nodiscard]] virtual QList<ListedService> services() const = 0;
    /// The time of the last refresh; invalid before the first.
    [[nodiscard]] virtual QDateTime lastUpdated() const = 0;
    /// One harmless line that says why it does not answer; empty while it does.
    [[nodiscard]] virtual QString problem() const { return {}; }

    /// Refreshes once.
    virtual void refresh() = 0;
    /// Refreshes now and then repeatedly, as long as this object lives.
    virtual void watch() = 0;

    /// Tells the server's process to end, and kills it if necessary. Calls `report` once, later, with a short
    /// harmless text about the outcome and whether the process has ended. On another machine it is the
    /// process that has the service's pid and port when the request arrives.
    using Report = std::function<void(const QString &text, bool hasEnded)>;
    virtual void stop(const ListedService &listed, const Report &report) = 0;

    /// Calls `use` with an address at which the server can be reached from this machine, or with an empty
    /// address and the reason, a harmless line; with the latter also if the connection ends later.
    using UseAddress = std::function<void(const QString &address, const QString &reason)>;
    virtual void reach(const Service &service, const UseAddress &use) = 0;

Q_SIGNALS:
    /// The result of one of the functions above has changed.
    void changed();
    /// A refresh has ended or failed.
    void refreshed();
};

} // namespace portolan
