// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"

#include <charconv>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/types.h>

/// Small access to /proc, which allocates nothing but in readAll(). Blocks for no longer than the kernel
/// needs to print a table.
namespace portolan::ProcFs {

/// The text "/proc/PID/NAME" or "/proc/PID/fd/NUMBER".
class Path
{
public:
    Path(pid_t pid, std::string_view name); ///< a name of at most 20 characters
    Path(pid_t pid, int descriptor);

    [[nodiscard]] const char *text() const { return m_text; }

private:
    char m_text[48];
};

/// Whether /proc is there and may be listed.
[[nodiscard]] bool isReadable();

/// The start of the file at `path`, as far as one read into `buffer` goes; absent when it cannot be read.
[[nodiscard]] std::optional<std::string_view> readInto(std::span<char> buffer, const char *path);
/// The file at `path` as far as it can be read.
[[nodiscard]] std::string readAll(const char *path);
/// What the symbolic link at `path`, relative to the directory `at`, says. Absent, with errno set, when it
/// cannot be read or does not fit into `buffer`.
[[nodiscard]] std::optional<std::string_view> readLink(std::span<char> buffer, const char *path,
                                                       int at = AT_FDCWD);

/// The whole of `word` as a number in that base; absent when it is none.
template <typename Number>
[[nodiscard]] std::optional<Number> number(std::string_view word, int base = 10)
{
    Number number{};
    const char *const end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, number, base);
    return error == std::errc() && last == end ? std::optional(number) : std::nullopt;
}

/// The numbered entries of a directory of /proc, as the kernel lists them: process ids, descriptors.
class NumberedEntries
{
public:
    explicit NumberedEntries(const char *path);

    struct Entry
    {
        unsigned number;
        ino_t inode; ///< the entry's own, given anew when the number names something new
    };

    /// Whether the directory could be opened.
    [[nodiscard]] bool isOpen() const { return m_directory.isOpen(); }
    /// The directory, to open its entries from.
    [[nodiscard]] int directory() const { return m_directory.get(); }
    /// The next entry in the kernel's order, which is ascending; absent at the end.
    [[nodiscard]] std::optional<Entry> next();
    /// Makes `next` go on at a place in the list, which the kernel numbers as it likes.
    void goTo(off_t place);

private:
    FileDescriptor m_directory;
    ssize_t m_filled = 0;
    ssize_t m_position = 0;
    alignas(8) char m_buffer[16 * 1024];
};

/// What a process holds open. What may not be looked into holds nothing.
class Descriptors
{
public:
    explicit Descriptors(pid_t pid);

    /// How many there are, a number that is about to be given included; 0 where the kernel does not tell.
    [[nodiscard]] unsigned count() const;
    /// What the descriptor is linked to; absent as for `readLink`.
    [[nodiscard]] std::optional<std::string_view> link(std::span<char> buffer, unsigned number) const;
    /// The lowest number from `skipTo` on that was not listed yet; absent at the end.
    [[nodiscard]] std::optional<unsigned> next();
    void skipTo(unsigned number);

private:
    explicit Descriptors(const char *folder);

    NumberedEntries m_entries;
    unsigned m_first = 0;
};

} // namespace portolan::ProcFs
