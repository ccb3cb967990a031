// SPDX-License-Identifier: MIT
#include "DescriptorLimit.h"

#include <algorithm>
#include <climits>

#include <sys/resource.h>

namespace portolan {

namespace {

constexpr rlim_t wanted = 4096;

// The soft limit at the start of the program; no limit until raise() is called.
rlim_t g_initial = RLIM_INFINITY;

rlimit limits()
{
    rlimit limits = {RLIM_INFINITY, RLIM_INFINITY};
    getrlimit(RLIMIT_NOFILE, &limits);
    return limits;
}

} // namespace

void DescriptorLimit::raise()
{
    rlimit raised = limits();
    g_initial = raised.rlim_cur;
    raised.rlim_cur = std::max(raised.rlim_cur, std::min(wanted, raised.rlim_max));
    setrlimit(RLIMIT_NOFILE, &raised);
}

int DescriptorLimit::current()
{
    return int(std::min<rlim_t>(limits().rlim_cur, INT_MAX));
}

void DescriptorLimit::restore(int most)
{
    rlimit lowered = limits();
    lowered.rlim_cur = std::min({lowered.rlim_cur, g_initial, rlim_t(most)});
    setrlimit(RLIMIT_NOFILE, &lowered);
}

} // namespace portolan
