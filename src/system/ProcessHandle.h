// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "ProcessIdentity.h"

#include <QtGlobal>

#include <chrono>
#include <optional>

namespace portolan {

/// One running process, held so that a signal can never reach another one that gets its id later: by a pidfd,
/// or where there is none to be had, by its id and the time of its start. Any thread.
class ProcessHandle
{
public:
    /// Holds the process that has `pid` now, whoever owns it. Holds none if there is none or it could not be
    /// told from a later one, and for an id that does not name one process (kill(2) takes 0 and negative ids
    /// for groups).
    explicit ProcessHandle(qint32 pid);

    /// Holds the process `identity`, and none if it has ended, even if another has its pid.
    explicit ProcessHandle(const ProcessIdentity &identity);

    /// Sends `signal`; 0 sends nothing and only asks. Returns whether the process is there and takes signals
    /// from this user; one that has ended is there until its parent has collected it.
    bool send(int signal) const;

    /// Blocks until the process has ended, at most for `limit`. Returns whether it has.
    [[nodiscard]] bool waitForEnd(std::chrono::milliseconds limit) const;

private:
    FileDescriptor m_pidfd;
    std::optional<ProcessIdentity> m_identity; ///< in place of a pidfd
};

} // namespace portolan
