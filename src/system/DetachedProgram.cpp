// SPDX-License-Identifier: MIT
#include "DetachedProgram.h"

#include "ChildSetup.h"
#include "DescriptorLimit.h"
#include "ProcessHandle.h"

#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <climits>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr int notStarted = 127; // as shells have it

/// What execve wants, made before the fork: the child may not allocate.
struct Call
{
    QByteArray path;
    QList<QByteArray> words;
    QList<QByteArray> entries;
    std::vector<char *> arguments;
    std::vector<char *> environment;
};

Call makeCall(const QString &program, const QStringList &arguments)
{
    Call call;
    call.path = QFile::encodeName(program);
    call.words.append(call.path);
    for (const QString &argument : arguments)
        call.words.append(QFile::encodeName(argument));
    call.entries = ChildSetup::environment();
    call.arguments = ChildSetup::pointers(call.words);
    call.environment = ChildSetup::pointers(call.entries);
    return call;
}

void dropDescriptors()
{
    closefrom(STDERR_FILENO + 1); // first: at the limit no other could be opened
    const int null = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, standard);
    closefrom(STDERR_FILENO + 1);
}

[[noreturn]] void becomeProgram(const Call &call)
{
    ChildSetup::takeDefaultSignals();
    dropDescriptors();
    DescriptorLimit::restore(INT_MAX);
    execve(call.path.constData(), call.arguments.data(), call.environment.data());
    _exit(notStarted);
}

/// The process in the middle: the program becomes an orphan by its end, and so somebody else's to collect.
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
    const pid_t middle = ChildSetup::startSharing(leaveProgramBehind, makeCall(program, arguments));
    while (middle > 0 && waitpid(middle, nullptr, 0) < 0 && errno == EINTR) {
    }
}

std::optional<int> DetachedProgram::startAndWatch(const QString &program, const QStringList &arguments,
                                                  std::chrono::milliseconds patience)
{
    const pid_t child = ChildSetup::startSharing(becomeProgramOfItsOwnSession, makeCall(program, arguments));
    if (child < 0)
        return notStarted;
    (void)ProcessHandle(child).waitForEnd(patience);
    int status = 0;
    if (waitpid(child, &status, WNOHANG) != child)
        return std::nullopt;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

QString DetachedProgram::find(const QString &name)
{
    return QStandardPaths::findExecutable(name);
}

} // namespace portolan
