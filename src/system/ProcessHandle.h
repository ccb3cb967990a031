// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "ProcessIdentity.h"

#include <QtGlobal>

#include <chrono>
#include <optional>

namespace portolan {

/// A handle on one running process, so that a signal can never reach another one that gets its pid later: a
/// pidfd or, where none is available, the pid and the start time. Any thread.
class ProcessHandle
{
public:
    /// Holds the process that has `pid` now, of any user. Holds none if there is none, if it could not be
    /// told from a later one, or if `pid` is not positive (kill(2) takes 0 and negative numbers for groups).
    explicit ProcessHandle(qint32 pid);

    /// Holds the process `identity`; none if it has ended, even if another process has its pid.
    explicit ProcessHandle(const ProcessIdentity &identity);

    /// Sends `signal`; 0 only checks. Returns whether the process exists and this user may signal it; a
    /// zombie still exists.
    bool send(int signal) const;

    /// Blocks until the process has ended, at most for `limit`. Returns whether it has; also true
    /// if none is held.
    [[nodiscard]] bool waitForEnd(std::chrono::milliseconds limit) const;

private:
    FileDescriptor m_pidfd;
    std::optional<ProcessIdentity> m_identity; ///< in place of a pidfd
};

} // namespace portolan
