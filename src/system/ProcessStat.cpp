// SPDX-License-Identifier: MIT
#include "ProcessStat.h"

#include "ProcFs.h"

#include <algorithm>

namespace portolan {

namespace {

/// Splits a line into words, which the kernel separates by single spaces.
class Words
{
public:
    explicit Words(std::string_view text)
        : m_rest(text)
    {}

    std::string_view next()
    {
        const std::string_view word = m_rest.substr(0, m_rest.find(' '));
        m_rest.remove_prefix(std::min(word.size() + 1, m_rest.size()));
        return word;
    }

    void skip(int count)
    {
        while (count-- > 0)
            next();
    }

private:
    std::string_view m_rest;
};

} // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text)
{
    // The name may contain brackets, spaces and line breaks; what follows it contains none.
    const size_t open = text.find('(');
    const size_t close = text.rfind(')');
    if (open == text.npos || close == text.npos || close < open)
        return std::nullopt;

    using ProcFs::number;
    Words words(text.substr(std::min(close + 2, text.size()))); // after the bracket and a space
    const std::string_view state = words.next();
    words.skip(10); // ppid pgrp session tty_nr tpgid flags minflt cminflt majflt cmajflt
    const auto user = number<unsigned long long>(words.next());
    const auto system = number<unsigned long long>(words.next());
    words.skip(6); // cutime cstime priority nice num_threads itrealvalue
    const auto start = number<unsigned long long>(words.next());
    if (state.size() != 1 || !user || !system || !start)
        return std::nullopt;
    return ProcessStat{.command = std::string(text.substr(open + 1, close - open - 1)),
                       .state = state.front(),
                       .cpuTicks = *user + *system,
                       .startTicks = *start};
}

std::optional<ProcessStat> readProcessStat(pid_t pid)
{
    char buffer[1024];
    const auto text = ProcFs::readInto(buffer, ProcFs::Path(pid, "stat").text());
    return text ? parseProcessStat(*text) : std::nullopt;
}

std::optional<unsigned long long> parseResidentPages(std::string_view text)
{
    Words words(text);
    words.skip(1); // size
    return ProcFs::number<unsigned long long>(words.next());
}

} // namespace portolan
