#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace portolan {

/// Discovery's three questions to the system's tools, answered in this process from the kernel's tables: the
/// same text at a hundredth of the price, without the processes that lsof loses and the mounts that it hangs
/// on.
namespace BuiltinTools {

/// What the tool at `path` would print for `arguments`. Absent, so that the real one has to be run, for any
/// other invocation, where /proc cannot be read, and with PORTOLAN_TOOLS=external in the environment at the
/// first call. Any thread; never waits for anything but the kernel.
[[nodiscard]] std::optional<QString> answer(const QString &path, const QStringList &arguments);

/// Whether the tool at `path` is one whose questions are answered here, so that asking costs no process.
[[nodiscard]] bool standInFor(const QString &path);

} // namespace BuiltinTools

} // namespace portolan
