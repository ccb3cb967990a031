// SPDX-License-Identifier: MIT
#include "TerminationSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

#include <sys/eventfd.h>
#include <termios.h>
#include <unistd.h>

namespace portolan {

namespace {

// A signal handler, which can run on any thread, may only store the number and write to this descriptor. That
// is never closed: a handler may be about to write when the object is destroyed.
std::atomic<int> g_event = -1;
std::atomic<int> g_signal = 0;
static_assert(std::atomic<int>::is_always_lock_free);

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

/// Control-S may have stopped the terminal in the middle of a write, which then never returns. TCOON alone
/// only undoes TCOOFF; in a background process either would stop the program.
void resumeOutput()
{
    if (tcgetpgrp(STDOUT_FILENO) == getpgrp()) {
        tcflow(STDOUT_FILENO, TCOOFF);
        tcflow(STDOUT_FILENO, TCOON);
    }
}

void tellEventLoop(int signal)
{
    const int error = errno;
    resumeOutput();
    g_signal = signal;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(g_event, &one, sizeof one);
    errno = error;
}

void clearEvent()
{
    eventfd_t count = 0;
    eventfd_read(g_event, &count);
}

int openEvent()
{
    if (g_event < 0)
        g_event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    clearEvent();
    return g_event;
}

void install(int signal, void (*handler)(int))
{
    struct sigaction action
    {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals()
    : m_notifier(openEvent(), QSocketNotifier::Read)
{
    g_signal = 0;
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier.setEnabled(false);
        Q_EMIT received(g_signal);
    });
    for (const int signal : handledSignals)
        install(signal, tellEventLoop);
}

TerminationSignals::~TerminationSignals()
{
    for (const int signal : handledSignals)
        install(signal, SIG_DFL);
    clearEvent();
}

int TerminationSignals::descriptor()
{
    return g_event;
}

bool TerminationSignals::isPending()
{
    return g_signal != 0;
}

} // namespace portolan

#include "moc_TerminationSignals.cpp"
