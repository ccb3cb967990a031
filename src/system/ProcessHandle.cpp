// SPDX-License-Identifier: MIT
#include "ProcessHandle.h"

#include "ProcFs.h"

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

bool waitGone(const ProcessIdentity &process, Clock::time_point end)
{
    constexpr std::chrono::milliseconds pause(10);
    while (ProcessIdentity::of(process.pid) == process) {
        if (Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

/// Whether /proc numbers processes as system calls do. It does not in a pid namespace without its own /proc.
bool isProcOfThisNamespace()
{
    char buffer[16];
    const auto self = ProcFs::readLink(buffer, "/proc/self");
    return self && ProcFs::number<pid_t>(*self) == getpid();
}

} // namespace

ProcessHandle::ProcessHandle(qint32 pid)
{
    if (pid <= 0)
        return;
    m_pidfd = FileDescriptor(int(syscall(SYS_pidfd_open, pid, 0)));
    const bool noSuchProcess = !m_pidfd.isOpen() && (errno == ESRCH || errno == EINVAL);
    if (!m_pidfd.isOpen() && !noSuchProcess)
        m_identity = ProcessIdentity::of(pid);
}

ProcessHandle::ProcessHandle(const ProcessIdentity &identity)
    : ProcessHandle(identity.pid)
{
    // Compared after the pidfd is open: if the pid belongs to the process in question now, it did then too.
    if (isProcOfThisNamespace() && ProcessIdentity::of(identity.pid) == identity)
        return;
    m_pidfd.close();
    m_identity.reset();
}

bool ProcessHandle::send(int signal) const
{
    if (m_pidfd.isOpen())
        return syscall(SYS_pidfd_send_signal, m_pidfd.get(), signal, nullptr, 0) == 0;
    return m_identity && ProcessIdentity::of(m_identity->pid) == m_identity &&
           kill(m_identity->pid, signal) == 0;
}

bool ProcessHandle::waitForEnd(std::chrono::milliseconds limit) const
{
    const auto end = Clock::now() + limit;
    if (m_pidfd.isOpen())
        return waitReadable(m_pidfd.get(), end);
    return !m_identity || waitGone(*m_identity, end);
}

} // namespace portolan
