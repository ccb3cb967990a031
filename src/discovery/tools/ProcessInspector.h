// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessStats.h"

#include <QString>
#include <QStringView>

#include <optional>

/// How what ps prints is read: how long a process has run, its share of the CPU and its memory. Pure
/// functions.
namespace portolan::ProcessInspector {

/// The figures in the answer of ps about one process; absent when there is no such process. A column that is
/// no number counts 0.
[[nodiscard]] std::optional<ProcessStats> parse(const QString &output);

/// Seconds of an elapsed time like "3-04:05:06". Takes any chain of groups: what is no number counts 0, what
/// is too large for 64 bits stays at their end.
[[nodiscard]] qint64 parseETime(QStringView text);

} // namespace portolan::ProcessInspector
