// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>
#include <vector>

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

/// Processes that live as long as this one.
class Children
{
public:
    /// Starts a process that runs `life`.
    template <typename Life>
    void start(Life life)
    {
        const pid_t parent = getpid();
        const pid_t child = fork();
        if (child < 0) {
            std::perror("fork");
            std::exit(1);
        }
        if (child > 0) {
            m_pids.push_back(child);
            return;
        }
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() == parent)
            life();
        _exit(1);
    }

    /// Reports that everything is ready, waits for the end of standard input, and ends the processes.
    void standUntilTold(const char *message) const
    {
        std::puts(message);
        std::fflush(stdout);
        while (std::getchar() != EOF) {
        }
        for (const pid_t child : m_pids)
            kill(child, SIGKILL);
        for (const pid_t child : m_pids)
            waitpid(child, nullptr, 0);
    }

private:
    std::vector<pid_t> m_pids;
};

} // namespace portolan
