// SPDX-License-Identifier: MIT
#pragma once

#include "Service.h"
#include "SortOrder.h"
#include "TerminalText.h"

#include <QList>
#include <QString>

#include <chrono>
#include <optional>

namespace portolan {

/// A server of the list, and what the list says about it besides.
struct ListedService
{
    Service service;
    bool isPinned = false;
    QString host;                            ///< as named with --host; empty: this machine
    std::optional<std::chrono::seconds> age; ///< since its machine fell silent; absent: up to date
    QString note;                            ///< shown in place of its status

    /// What it is known by from one scan to the next, on whichever machine.
    [[nodiscard]] QString key() const { return host + u' ' + service.id(); }

    /// How it is spoken of, without control characters: "Shop (process 4242, port 3000) on web1".
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
