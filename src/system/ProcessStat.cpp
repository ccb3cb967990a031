// SPDX-License-Identifier: MIT
#include "ProcessStat.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace portolan {

namespace {

/// Hands out the words of a line, which the kernel parts by single blanks.
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

template <typename Number>
bool parse(std::string_view word, Number &number)
{
    const char *end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && last == end;
}

} // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text)
{
    // The name may hold brackets, blanks and line breaks of its own; what follows it holds none.
    const size_t open = text.find('(');
    const auto *const last = static_cast<const char *>(memrchr(text.data(), ')', text.size()));
    const size_t close = last ? size_t(last - text.data()) : 0;
    if (open == std::string_view::npos || close < open)
        return std::nullopt;

    ProcessStat stat;
    stat.command = text.substr(open + 1, close - open - 1);
    Words words(text.substr(std::min(close + 2, text.size()))); // behind the bracket and a blank
    const std::string_view state = words.next();
    words.skip(10); // ppid pgrp session tty_nr tpgid flags minflt cminflt majflt cmajflt
    unsigned long long user = 0;
    unsigned long long system = 0;
    if (state.size() != 1 || !parse(words.next(), user) || !parse(words.next(), system))
        return std::nullopt;
    words.skip(6); // cutime cstime priority nice num_threads itrealvalue
    if (!parse(words.next(), stat.startTicks))
        return std::nullopt;
    stat.state = state.front();
    stat.cpuTicks = user + system;
    return stat;
}

std::optional<unsigned long long> parseResidentPages(std::string_view text)
{
    Words words(text);
    words.skip(1); // size
    unsigned long long pages = 0;
    return parse(words.next(), pages) ? std::optional(pages) : std::nullopt;
}

} // namespace portolan
