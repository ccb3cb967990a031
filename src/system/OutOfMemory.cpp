// SPDX-License-Identifier: MIT
#include "OutOfMemory.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include <unistd.h>

namespace portolan {

namespace {

std::atomic<const char *> g_line = nullptr;

[[noreturn]] void endProgram()
{
    // Several threads may be out of memory at once.
    if (const char *const line = g_line.exchange(nullptr)) [[maybe_unused]]
        const auto written = write(STDERR_FILENO, line, std::strlen(line));
    _exit(EXIT_FAILURE);
}

/// Qt's containers throw std::bad_alloc, which nothing catches.
[[noreturn]] void onTerminate()
{
    try {
        if (const auto error = std::current_exception())
            std::rethrow_exception(error);
    } catch (const std::bad_alloc &) {
        endProgram();
    } catch (...) {
    }
    std::abort();
}

} // namespace

void OutOfMemory::endsProgramWith(const char *line)
{
    g_line = line;
    std::set_new_handler(endProgram);
    std::set_terminate(onTerminate);
}

} // namespace portolan
