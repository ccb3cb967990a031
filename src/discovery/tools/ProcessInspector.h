// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessStats.h"

#include <QString>
#include <QStringView>

#include <optional>

/// Parses the output of ps: uptime, CPU and memory of a process. Pure functions.
namespace portolan::ProcessInspector {

/// The statistics in the answer of ps about one process; absent if there is no such process. A column that is
/// no number counts as 0.
[[nodiscard]] std::optional<ProcessStats> parse(const QString &output);

/// Seconds of an elapsed time like "3-04:05:06". Accepts any number of groups: one that is no number counts
/// as 0; a result beyond 64 bits saturates.
[[nodiscard]] qint64 parseETime(QStringView text);

} // namespace portolan::ProcessInspector
