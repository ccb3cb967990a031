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

/// Reads /proc. Only readAll() allocates. Blocks for no longer than the kernel needs to print a file.
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

/// The start of the file at `path`: what one read into `buffer` returns; absent if it cannot be read.
[[nodiscard]] std::optional<std::string_view> readInto(std::span<char> buffer, const char *path);
/// The content of the file at `path`, up to the first error.
[[nodiscard]] std::string readAll(const char *path);
/// The target of the symbolic link at `path`, relative to the directory `at`. Absent, with errno set, if it
/// cannot be read or does not fit into `buffer`.
[[nodiscard]] std::optional<std::string_view> readLink(std::span<char> buffer, const char *path,
                                                       int at = AT_FDCWD);

/// The whole of `word` as a number in base `base`; absent if it is none.
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
        ino_t inode; ///< of the entry; a number that is used again gets a new one
    };

    /// Whether the directory could be opened.
    [[nodiscard]] bool isOpen() const { return m_directory.isOpen(); }
    /// The directory, to open its entries from.
    [[nodiscard]] int directory() const { return m_directory.get(); }
    /// The next entry in the kernel's order, which is ascending; absent at the end.
    [[nodiscard]] std::optional<Entry> next();
    /// Makes `next` continue at the directory offset `place`, whose meaning is up to the kernel.
    void goTo(off_t place);

private:
    FileDescriptor m_directory;
    ssize_t m_filled = 0;
    ssize_t m_position = 0;
    alignas(8) char m_buffer[16 * 1024];
};

/// The open descriptors of a process; none if they may not be read.
class Descriptors
{
public:
    explicit Descriptors(pid_t pid);

    /// How many there are, including one that is just being allocated; 0 where the kernel does not tell.
    [[nodiscard]] unsigned count() const;
    /// The target of the descriptor's link; absent as for `readLink`.
    [[nodiscard]] std::optional<std::string_view> link(std::span<char> buffer, unsigned number) const;
    /// The next descriptor in ascending order, from that of `skipTo` on; absent at the end.
    [[nodiscard]] std::optional<unsigned> next();
    void skipTo(unsigned number);

private:
    explicit Descriptors(const char *folder);

    NumberedEntries m_entries;
    unsigned m_first = 0;
};

} // namespace portolan::ProcFs
