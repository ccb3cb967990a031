#pragma once

#include <QString>
#include <QStringList>

namespace portolan {

/// Where the system keeps its tools. Looked up on each call: a tool may be installed while the program runs.
namespace ToolPaths {

[[nodiscard]] QString lsof();
[[nodiscard]] QString ps();

/// The first of `candidates` (at least one) that is an executable file; the first of all if none is.
[[nodiscard]] QString firstExecutable(const QStringList &candidates);

} // namespace ToolPaths

} // namespace portolan
