// SPDX-License-Identifier: MIT
#include "DetachedProgram.h"

#include "ChildSetup.h"
#include "ProcessHandle.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

namespace {

using ChildSetup::Call;

constexpr int notStarted = 127; // as shells have it

void dropDescriptors()
{
    closefrom(STDERR_FILENO + 1); // first: at the limit no other descriptor could be opened
    const int null = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, standard);
    closefrom(STDERR_FILENO + 1);
}

[[noreturn]] void becomeProgram(const Call &call)
{
    dropDescriptors();
    call.execute();
    _exit(notStarted);
}

/// The intermediate process: when it exits, the program becomes an orphan, which another process reaps.
[[noreturn]] void leaveProgramBehind(const Call &call)
{
    setsid();
    ChildSetup::startSharing(becomeProgram, call);
    _exit(0);
}

[[noreturn]] void becomeProgramOfItsOwnSession(const Call &call)
{
    setsid();
    becomeProgram(call);
}

} // namespace

void DetachedProgram::start(const QString &program, const QStringList &arguments)
{
    const pid_t middle = ChildSetup::startSharing(leaveProgramBehind, Call(program, arguments));
    while (middle > 0 && waitpid(middle, nullptr, 0) < 0 && errno == EINTR) {
    }
}

std::optional<int> DetachedProgram::startAndWatch(const QString &program, const QStringList &arguments,
                                                  std::chrono::milliseconds patience)
{
    const pid_t child = ChildSetup::startSharing(becomeProgramOfItsOwnSession, Call(program, arguments));
    if (child < 0)
        return notStarted;
    (void)ProcessHandle(child).waitForEnd(patience);
    int status = 0;
    if (waitpid(child, &status, WNOHANG) != child)
        return std::nullopt;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace portolan
