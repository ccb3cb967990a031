// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>

#include <array>
#include <csignal>
#include <cstdint>
#include <optional>

#include <linux/sched.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/times.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

/// A child process that waits for signals. Killed and reaped at the end of the scope.
class TestChild
{
public:
    enum Behaviour { endsOnTerm, ignoresTerm };

    explicit TestChild(Behaviour behaviour)
        : TestChild(behaviour, {})
    {}
    ~TestChild()
    {
        if (m_pid <= 0)
            return;
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    Q_DISABLE_COPY(TestChild)
    TestChild(TestChild &&other) noexcept
        : m_pid(std::exchange(other.m_pid, -1))
    {}

    /// A child with a chosen id; no value if the kernel does not permit that.
    [[nodiscard]] static std::optional<TestChild> withPid(pid_t pid, Behaviour behaviour)
    {
        TestChild child(behaviour, pid);
        return child.m_pid == pid ? std::optional(std::move(child)) : std::nullopt;
    }

    /// The same, in a later clock tick than now: the kernel notes the start of a process in ticks.
    [[nodiscard]] static std::optional<TestChild> withPidLater(pid_t pid, Behaviour behaviour)
    {
        const clock_t now = times(nullptr);
        while (times(nullptr) <= now + 1)
            sched_yield();
        return withPid(pid, behaviour);
    }

    [[nodiscard]] pid_t pid() const { return m_pid; }

    [[nodiscard]] bool isAlive() const
    {
        siginfo_t ended = {};
        return waitid(P_PID, id_t(m_pid), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0;
    }

    /// Waits until it exits and reaps it; returns the signal that ended it, or 0.
    int collect()
    {
        int status = 0;
        waitpid(std::exchange(m_pid, -1), &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    TestChild(Behaviour behaviour, std::optional<pid_t> wanted)
    {
        std::array<int, 2> ready = {};
        if (pipe(ready.data()) != 0)
            return;
        m_pid = wanted ? forkWithPid(*wanted) : fork();
        if (m_pid == 0)
            wait(behaviour, ready);
        close(ready[1]);
        char byte = 0;
        [[maybe_unused]] const auto count = read(ready[0], &byte, 1);
        close(ready[0]);
    }

    static pid_t forkWithPid(pid_t pid)
    {
        clone_args arguments = {};
        arguments.exit_signal = SIGCHLD;
        arguments.set_tid = reinterpret_cast<std::uintptr_t>(&pid);
        arguments.set_tid_size = 1;
        return pid_t(syscall(SYS_clone3, &arguments, sizeof arguments));
    }

    [[noreturn]] static void wait(Behaviour behaviour, const std::array<int, 2> &ready)
    {
        signal(SIGTERM, behaviour == ignoresTerm ? SIG_IGN : SIG_DFL);
        close(ready[0]);
        [[maybe_unused]] const auto count = write(ready[1], "", 1);
        close(ready[1]);
        for (;;)
            pause();
    }

    pid_t m_pid = -1;
};

} // namespace portolan
