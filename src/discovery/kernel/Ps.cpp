#include "Ps.h"

#include "ProcFs.h"
#include "ProcessTable.h"
#include "Ps_p.h"

#include <algorithm>
#include <string>

#include <ctime>
#include <unistd.h>

namespace portolan {

namespace {

std::string twoDigits(unsigned long number)
{
    return {char('0' + number / 10), char('0' + number % 10)};
}

std::string elapsedText(unsigned long seconds)
{
    const unsigned long days = seconds / 86400;
    const unsigned long hours = seconds / 3600 % 24;
    std::string text;
    if (days > 0)
        text += std::to_string(days) + '-';
    if (days > 0 || hours > 0)
        text += twoDigits(hours) + ':';
    return text + twoDigits(seconds / 60 % 60) + ':' + twoDigits(seconds % 60);
}

/// `share` is in tenths of a percent.
std::string shareText(unsigned long long share)
{
    std::string text = std::to_string(share / 10);
    if (share < 1000)
        text += '.' + std::to_string(share % 10);
    return text;
}

/// Appends a column that ends at `end` if it can: a column that was too wide takes from the blanks of the
/// next.
void appendColumn(std::string &line, const std::string &text, size_t end)
{
    const size_t separator = line.empty() ? 0 : 1;
    const size_t taken = line.size() + text.size();
    line.append(std::max(separator, end > taken ? end - taken : 0), ' ');
    line += text;
}

unsigned long long nowTicks(long ticksPerSecond)
{
    // The clock behind /proc/uptime.
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return Ps::ticksSinceBoot(now.tv_sec * 100LL + now.tv_nsec / 10'000'000, ticksPerSecond);
}

} // namespace

unsigned long long Ps::ticksSinceBoot(long long centiseconds, long ticksPerSecond)
{
    return static_cast<unsigned long long>(double(centiseconds) / 100.0 * double(ticksPerSecond));
}

std::string Ps::line(const Figures &figures)
{
    constexpr size_t elapsedEnd = 11;
    constexpr size_t shareEnd = elapsedEnd + 1 + 4;
    constexpr size_t residentEnd = shareEnd + 1 + 5;

    // ps goes through fractions of a second and back, which now and then loses a tick.
    double seconds = 0;
    if (figures.nowTicks > figures.startTicks)
        seconds = double(figures.nowTicks - figures.startTicks) / double(figures.ticksPerSecond);
    const auto ticks = static_cast<unsigned long long>(seconds * double(figures.ticksPerSecond));
    const unsigned long long share = ticks > 0 ? figures.cpuTicks * 1000 / ticks : 0;

    std::string line;
    appendColumn(line, elapsedText(static_cast<unsigned long>(seconds)), elapsedEnd);
    appendColumn(line, shareText(share), shareEnd);
    appendColumn(line, std::to_string(figures.residentKiB), residentEnd);
    line += '\n';
    return line;
}

std::string Ps::stats(pid_t pid)
{
    static const long ticksPerSecond = sysconf(_SC_CLK_TCK);
    static const auto pageKiB = static_cast<unsigned long long>(sysconf(_SC_PAGESIZE) / 1024);
    KernelProcessTable table;
    const auto runTime = table.runTime(pid);
    const auto times = runTime ? table.stat(pid, runTime) : std::nullopt;
    char buffer[256];
    // The same figure as in status, which takes the kernel three times as long to print.
    const auto statm = ProcFs::readInto(buffer, ProcFs::Path(pid, "statm").text());
    const auto residentPages = statm ? parseResidentPages(*statm) : std::nullopt;
    if (!times || !residentPages)
        return {};
    return line({.cpuTicks = times->cpuTicks,
                 .startTicks = times->startTicks,
                 .nowTicks = nowTicks(ticksPerSecond),
                 .residentKiB = *residentPages * pageKiB,
                 .ticksPerSecond = ticksPerSecond});
}

} // namespace portolan
