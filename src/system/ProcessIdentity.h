// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>

namespace portolan {

/// Tells a process from any later one with the same pid, by its start time.
struct ProcessIdentity
{
    qint32 pid = 0;
    quint64 startTicks = 0; ///< in clock ticks since boot

    /// The process that has `pid` now. Absent if there is none, or where the system does not tell start
    /// times.
    [[nodiscard]] static std::optional<ProcessIdentity> of(qint32 pid);

    friend bool operator==(const ProcessIdentity &, const ProcessIdentity &) = default;
};

} // namespace portolan
