#include "ProcessHandle.h"

#include "ProcFs.h"
#include "ProcessStat.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <thread>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace portolan {

namespace {

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds until(Clock::time_point end)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    return std::max(left, std::chrono::milliseconds(0));
}

/// A pidfd becomes readable when its process ends.
bool waitReadable(int fd, Clock::time_point end)
{
    pollfd ended{.fd = fd, .events = POLLIN, .revents = 0};
    int ready = 0;
    do
        ready = poll(&ended, 1, int(until(end).count()));
    while (ready < 0 && errno == EINTR);
    return ready > 0;
}

/// When the process that has `pid` now was started.
std::optional<unsigned long long> startOf(qint32 pid)
{
    char text[1024];
    const auto line = ProcFs::readInto(text, ProcFs::Path(pid, "stat").text());
    const auto stat = line ? parseProcessStat(*line) : std::nullopt;
    return stat ? std::optional(stat->startTicks) : std::nullopt;
}

bool waitGone(qint32 pid, unsigned long long start, Clock::time_point end)
{
    constexpr std::chrono::milliseconds pause(10);
    while (startOf(pid) == start) {
        if (Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace

ProcessHandle::ProcessHandle(qint32 pid)
{
    if (pid <= 0)
        return;
    m_pidfd = FileDescriptor(int(syscall(SYS_pidfd_open, pid, 0)));
    const bool noSuchProcess = !m_pidfd.isOpen() && (errno == ESRCH || errno == EINVAL);
    if (!m_pidfd.isOpen() && !noSuchProcess)
        m_start = startOf(pid);
    m_pid = m_pidfd.isOpen() || m_start ? pid : 0;
}

bool ProcessHandle::send(int signal) const
{
    if (m_pid == 0)
        return false;
    if (!m_pidfd.isOpen())
        return startOf(m_pid) == m_start && kill(m_pid, signal) == 0;
    return syscall(SYS_pidfd_send_signal, m_pidfd.get(), signal, nullptr, 0) == 0;
}

bool ProcessHandle::waitForEnd(std::chrono::milliseconds limit) const
{
    if (m_pid == 0)
        return true;
    const auto end = Clock::now() + limit;
    return m_pidfd.isOpen() ? waitReadable(m_pidfd.get(), end) : waitGone(m_pid, *m_start, end);
}

} // namespace portolan
