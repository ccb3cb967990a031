// SPDX-License-Identifier: MIT
#include "ChildProcess.h"

#include "ChildSetup.h"
#include "FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

namespace {

/// With a higher limit lsof, which closes every possible descriptor one by one, takes up to minutes.
constexpr int maxDescriptors = 1024;

struct Launch
{
    ChildSetup::Call call;
    int output;
    int null;
    int failure; ///< where the child says that it could not become the program
    pid_t caller;
};

[[noreturn]] void fail(int descriptor)
{
    [[maybe_unused]] const auto written = write(descriptor, "", 1);
    _exit(127);
}

[[noreturn]] void becomeProgram(const Launch &launch)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != launch.caller)
        _exit(127);
    // Where this program has no standard input, number 0 is free or belongs to another descriptor.
    const int inputFlags = fcntl(STDIN_FILENO, F_GETFD);
    if (inputFlags < 0 || (inputFlags & FD_CLOEXEC))
        dup2(launch.null, STDIN_FILENO);
    constexpr int failure = STDERR_FILENO + 1;
    if (dup2(launch.output, STDOUT_FILENO) < 0 || dup2(launch.null, STDERR_FILENO) < 0 ||
        (launch.failure != failure && dup3(launch.failure, failure, O_CLOEXEC) < 0))
        fail(launch.failure);
    closefrom(failure + 1);
    launch.call.execute(maxDescriptors);
    fail(failure);
}

/// A copy above the standard descriptors, which the child rearranges.
FileDescriptor aboveStandard(int descriptor)
{
    return FileDescriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

bool reportsFailure(int descriptor)
{
    char byte = 0;
    ssize_t count = 0;
    do {
        count = read(descriptor, &byte, 1);
    } while (count < 0 && errno == EINTR);
    return count > 0;
}

} // namespace

std::optional<ChildProcess> ChildProcess::start(const QString &path, const QStringList &arguments,
                                                const QList<QByteArray> &environment, int standardOutput)
{
    const FileDescriptor null = aboveStandard(FileDescriptor(open("/dev/null", O_RDWR | O_CLOEXEC)).get());
    const FileDescriptor output = aboveStandard(standardOutput);
    int ends[2];
    if (!null.isOpen() || !output.isOpen() || pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    // Closed by a successful exec.
    const FileDescriptor failureReader(ends[0]);
    FileDescriptor failureWriter = aboveStandard(FileDescriptor(ends[1]).get());
    if (!failureWriter.isOpen())
        return std::nullopt;

    const Launch launch{
        .call = {path, arguments, environment},
        .output = output.get(),
        .null = null.get(),
        .failure = failureWriter.get(),
        .caller = getpid(),
    };
    const pid_t pid = ChildSetup::startSharing(becomeProgram, launch);
    if (pid < 0)
        return std::nullopt;

    failureWriter.close();
    ChildProcess child(pid);
    if (!reportsFailure(failureReader.get()))
        return child;
    [[maybe_unused]] const bool ended = child.wait();
    return std::nullopt;
}

void ChildProcess::prepareCopy(const char *name, int connection)
{
    setpgid(0, 0);
    prctl(PR_SET_NAME, name);
    dup2(connection, STDIN_FILENO);
    closefrom(STDIN_FILENO + 1);
    [[maybe_unused]] const int isThere = chdir("/");
    ChildSetup::takeDefaultSignals();
}

ChildProcess::ChildProcess(pid_t pid)
    : m_pid(pid)
{}

ChildProcess::ChildProcess(ChildProcess &&other) noexcept
    : m_pid(std::exchange(other.m_pid, -1))
{}

ChildProcess::~ChildProcess()
{
    if (m_pid >= 0)
        reap(WNOHANG);
}

bool ChildProcess::wait(QDeadlineTimer deadline, int interruption)
{
    if (deadline.isForever() && interruption < 0)
        return reap(0);

    // Without a pidfd (old kernels, no descriptors left) the child is polled.
    const FileDescriptor handle(int(syscall(SYS_pidfd_open, m_pid, 0)));
    constexpr qint64 lookAgain = 10;
    while (!reap(WNOHANG)) {
        if (deadline.hasExpired())
            return false;
        qint64 pause = deadline.remainingTime();
        if (!handle.isOpen())
            pause = pause < 0 ? lookAgain : std::min(pause, lookAgain);
        pollfd watched[] = {{handle.get(), POLLIN, 0}, {interruption, POLLIN, 0}};
        poll(watched, std::size(watched), int(std::min<qint64>(pause, INT_MAX)));
        if (watched[1].revents)
            return reap(WNOHANG);
    }
    return true;
}

void ChildProcess::killGroup()
{
    // The number stays the group's until the child is reaped and the group is empty, so no other process is
    // hit.
    kill(-m_pid, SIGKILL);
}

bool ChildProcess::reap(int flags)
{
    pid_t ended = 0;
    do {
        ended = waitpid(m_pid, nullptr, flags);
    } while (ended < 0 && errno == EINTR);
    if (ended == 0)
        return false;
    // An error means that there is nothing to reap: with SIGCHLD ignored the kernel has done so.
    m_pid = -1;
    return true;
}

} // namespace portolan
