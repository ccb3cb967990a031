#pragma once

#include "Shell.h"

namespace portolan {

/// What the system's tools say: answered in this process where it can be (BuiltinTools.h), else by running
/// them. Any thread; blocks the caller.
namespace ToolAnswer {

/// As Shell::run(). An answer that is given in this process meets no limit.
[[nodiscard]] Shell::Result to(const QString &path, const QStringList &arguments,
                               const Shell::Limits &limits = {});

/// Whether the questions to the tool at `path` are answered in this process.
[[nodiscard]] bool isImmediate(const QString &path);

} // namespace ToolAnswer

} // namespace portolan
