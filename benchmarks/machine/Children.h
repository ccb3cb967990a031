#pragma once

#include <cstdio>
#include <cstdlib>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

/// Starts a process that runs `life` and ends with this one.
template <typename Life>
void startChild(Life life)
{
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) {
        std::perror("fork");
        std::exit(1);
    }
    if (child > 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() == parent)
        life();
    _exit(1);
}

/// Says that everything stands, then waits for the end of standard input.
inline void standUntilTold(const char *message)
{
    std::puts(message);
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
}
