#pragma once

#include "FileDescriptor.h"

#include <QtGlobal>

#include <chrono>
#include <optional>
#include <utility>

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

    ProcessHandle(ProcessHandle &&other) noexcept
        : m_pid(std::exchange(other.m_pid, 0))
        , m_pidfd(std::move(other.m_pidfd))
        , m_start(other.m_start)
    {}
    ProcessHandle &operator=(ProcessHandle &&other) noexcept
    {
        std::swap(m_pid, other.m_pid);
        std::swap(m_pidfd, other.m_pidfd);
        std::swap(m_start, other.m_start);
        return *this;
    }

    /// Sends `signal`; 0 sends nothing and only asks. Returns whether the process is there and takes signals
    /// from this user; one that has ended is there until its parent has collected it.
    bool send(int signal) const;

    /// Blocks until the process has ended, at most for `limit`. Returns whether it has.
    [[nodiscard]] bool waitForEnd(std::chrono::milliseconds limit) const;

private:
    qint32 m_pid = 0;                          ///< 0: holds none
    FileDescriptor m_pidfd;                    ///< not open with a pid: no pidfd to be had
    std::optional<unsigned long long> m_start; ///< what tells it apart then: in clock ticks since boot
};

} // namespace portolan
