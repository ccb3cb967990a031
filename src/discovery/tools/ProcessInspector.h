// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessStats.h"

#include <QString>

#include <optional>

namespace portolan {

/// The live figures of a process: how long it has run, its share of the CPU and its memory.
namespace ProcessInspector {

/// Asks ps about one process; nothing when there is no such process. Blocks while ps runs.
[[nodiscard]] std::optional<ProcessStats> stats(qint32 pid);

/// What the answer of ps says. A column that is no number counts 0.
[[nodiscard]] std::optional<ProcessStats> parse(const QString &output);

} // namespace ProcessInspector

} // namespace portolan
