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

    /// What comes of a stop so far.
    struct Outcome
    {
        QString text;           ///< a few harmless words
        bool isOver = false;    ///< whether nothing follows
        bool hasFailed = false; ///< whether the server runs on; `isOver` then
    };
    using Report = std::function<void(const Outcome &outcome)>;
    /// Ends the server's process, and kills it if need be. Calls `report` whenever there is something to
    /// tell.
    virtual void stop(const Service &service, const Report &report) = 0;

    /// Calls `use` with an address at which this machine reaches the server, or with an empty one and the
    /// reason why there is none.
    using UseAddress = std::function<void(const QString &address, const QString &reason)>;
    virtual void reach(const Service &service, const UseAddress &use) = 0;

Q_SIGNALS:
    /// Something that the functions above tell has changed.
    void changed();
    /// It has been looked at, or does not answer.
    void looked();
};

} // namespace portolan
