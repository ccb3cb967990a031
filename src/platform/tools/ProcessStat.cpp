#include "ProcessStat.h"

#include <algorithm>
#include <charconv>

namespace {

/// Hands out the words of a line that is separated by blanks.
class Words
{
public:
    explicit Words(std::string_view text)
        : m_rest(text)
    {}

    std::string_view next()
    {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(blanks), m_rest.size()));
        const std::string_view word = m_rest.substr(0, m_rest.find_first_of(blanks));
        m_rest.remove_prefix(word.size());
        return word;
    }

    void skip(int count)
    {
        while (count-- > 0)
            next();
    }

private:
    static constexpr std::string_view blanks = " \t\n";
    std::string_view m_rest;
};

template <typename Number>
bool parse(std::string_view word, Number &number)
{
    const char *end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && last == end;
}

/// The value behind "\nNAME:" in a table of such lines.
std::optional<std::string_view> valueOf(std::string_view table, std::string_view name)
{
    const size_t at = table.find(name);
    if (at == std::string_view::npos)
        return std::nullopt;
    return Words(table.substr(at + name.size())).next();
}

} // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text)
{
    // The name may hold brackets, blanks and line breaks of its own; what follows it holds none.
    const size_t open = text.find('(');
    const size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return std::nullopt;

    ProcessStat stat;
    stat.command = text.substr(open + 1, close - open - 1);
    Words words(text.substr(close + 1));
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

std::optional<ProcessStatus> parseProcessStatus(std::string_view text)
{
    // A line break in the name is printed escaped, so no name can forge a line.
    ProcessStatus status;
    const auto group = valueOf(text, "\nTgid:");
    if (!group || !parse(*group, status.threadGroup))
        return std::nullopt;
    if (const auto resident = valueOf(text, "\nVmRSS:"); resident && !parse(*resident, status.residentKiB))
        return std::nullopt;
    return status;
}
