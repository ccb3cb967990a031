// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace portolan {

/// The two tools: where the system keeps them, looked up on each call since they may be installed while the
/// program runs, and the arguments that they are run with.
namespace ToolCommands {

[[nodiscard]] QString lsof();
[[nodiscard]] QString ps();

/// The first of `candidates` (at least one) that is an executable file; the first of all if none is.
[[nodiscard]] QString firstExecutable(const QStringList &candidates);

/// lsof: the listening TCP sockets, in field output.
[[nodiscard]] QStringList listeners();
/// lsof: the working folder of a process, in field output.
[[nodiscard]] QStringList workingFolder(qint32 pid);
/// ps: elapsed time, CPU share and resident memory of a process.
[[nodiscard]] QStringList stats(qint32 pid);

} // namespace ToolCommands

} // namespace portolan
