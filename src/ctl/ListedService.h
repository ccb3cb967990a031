// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessIdentity.h"
#include "Service.h"
#include "SortOrder.h"
#include "TerminalText.h"

#include <QList>
#include <QString>

#include <chrono>
#include <optional>

namespace portolan {

/// A server in the list, and what the list shows with it.
struct ListedService
{
    Service service;
    std::optional<ProcessIdentity>
        identity; ///< of its process when listed; absent where the system does not tell
    bool isPinned = false;
    QString host;                            ///< as named with --host; empty: this machine
    std::optional<std::chrono::seconds> age; ///< since it was last seen; absent: up to date
    QString note;                            ///< shown in place of its status

    /// Identifies it from one scan to the next, among all machines.
    [[nodiscard]] QString key() const { return host + u' ' + service.id(); }

    /// Describes it in messages, without control characters: "Shop (process 4242, port 3000) on web1".
    [[nodiscard]] QString description() const
    {
        const QString text =
            QStringLiteral("%1 (process %2, port %3)")
                .arg(service.displayName, QString::number(service.pid), QString::number(service.port));
        return TerminalText::harmless(host.isEmpty() ? text : text + QStringLiteral(" on ") + host);
    }

    friend bool operator==(const ListedService &, const ListedService &) = default;

    /// Those that match the search text in a field or their host, pinned ones first, sorted.
    [[nodiscard]] static QList<ListedService> visible(QList<ListedService> all, const QString &searchText,
                                                      SortOrder order);
};

} // namespace portolan
