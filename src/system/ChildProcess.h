// SPDX-License-Identifier: MIT
#pragma once

#include "ChildSetup.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

#include <sys/types.h>

namespace portolan {

/// A process that this program started. It leads a process group of its own, inherits no descriptors but
/// those that it is given, and starts with default signal dispositions and an empty mask.
class ChildProcess
{
public:
    /// Starts the program at `path` (absolute) at the cost of an exec, without copying this process's memory.
    /// `arguments` are passed unchanged, after the path as argv[0]; `environment` as "NAME=value". It writes
    /// to `standardOutput`, inherits standard input, has its standard error on /dev/null and a soft limit of
    /// open descriptors of at most 1024, and is killed when the calling thread ends. Nothing if that is not
    /// possible: no such file, not executable, no descriptors or processes left.
    [[nodiscard]] static std::optional<ChildProcess> start(const QString &path, const QStringList &arguments,
                                                           const QList<QByteArray> &environment,
                                                           int standardOutput);

    /// Starts a copy of this process that ends when `serve`, called with its descriptor 0, returns. That
    /// descriptor is `connection`; the copy has no other, runs in the root folder and is called `name` (at
    /// most 15 characters). `serve` may neither allocate nor lock: threads that held a lock do not exist in
    /// the copy. Nothing if that is not possible.
    template <typename Serve>
    [[nodiscard]] static std::optional<ChildProcess> fork(const char *name, int connection, Serve serve)
    {
        const ChildSetup::SignalsHeld held;
        const pid_t pid = ::fork();
        if (pid == 0) {
            prepareCopy(name, connection);
            serve(STDIN_FILENO);
            _exit(0);
        }
        return pid < 0 ? std::nullopt : std::optional(ChildProcess(pid));
    }

    ChildProcess(ChildProcess &&other) noexcept;
    ChildProcess &operator=(ChildProcess &&) = delete;
    /// A child that has not ended runs on, and this program will not reap it.
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return m_pid; }

    /// How long to wait for a killed child to end. One that is stuck in the kernel takes longer.
    static constexpr std::chrono::milliseconds killTimeout{250};

    /// Waits until the child has ended, and reaps it. Returns false at the deadline, or when the descriptor
    /// `interruption` (-1: none) becomes readable.
    [[nodiscard]] bool wait(QDeadlineTimer deadline = QDeadlineTimer(QDeadlineTimer::Forever),
                            int interruption = -1);

    /// Kills the child and its whole process group. Only before wait() has returned true.
    void killGroup();

private:
    explicit ChildProcess(pid_t pid);
    static void prepareCopy(const char *name, int connection);
    bool reap(int flags);

    pid_t m_pid = -1;
};

} // namespace portolan
