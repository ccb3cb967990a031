// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <stop_token>

namespace portolan {

class UnreapedChildren;

/// Runs a command-line tool and returns what it printed. No state; any thread; blocks the caller.
///
/// The child gets a process group of its own, no inherited descriptors but standard input, a soft descriptor
/// limit of at most 1024, a UTF-8 locale with C number formats, and neither of the
/// variables that pass on the desktop's activation.
namespace Shell {

/// The limits of a run. The defaults limit only the size of the output.
struct Limits
{
    /// The maximum time from the tool's start to its exit. After that its whole process group is killed.
    std::optional<std::chrono::milliseconds> deadline;
    /// The maximum size of the output in bytes. Beyond it the group is killed and the result is empty.
    qsizetype maxOutput = qsizetype(64) * 1024 * 1024;
    /// A stop request ends the run as the deadline does.
    std::stop_token stop;
    /// Takes a killed child that does not end in time; without it such a child is not reaped.
    UnreapedChildren *unreaped = nullptr;
};

struct Result
{
    QString output;        ///< whole standard output; empty on any failure
    bool timedOut = false; ///< whether the deadline ended the run
};

/// Runs the executable at the absolute `path` with `arguments` as separate argv entries and waits for it.
/// Returns its whole standard output as UTF-8 text, or "" on any failure (cannot be started, output that is
/// not UTF-8). Standard error is discarded; the exit status is ignored.
[[nodiscard]] QString run(const QString &path, const QStringList &arguments);

/// As above, within `limits`; a run that a limit ends gives "".
[[nodiscard]] Result run(const QString &path, const QStringList &arguments, const Limits &limits);

} // namespace Shell

} // namespace portolan
