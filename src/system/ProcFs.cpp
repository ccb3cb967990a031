// SPDX-License-Identifier: MIT
#include "ProcFs.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <limits>

#include <dirent.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace portolan {

namespace {

// For short texts that are known to fit: snprintf would take a good part of the time that reading the file
// does.
char *append(char *at, std::string_view text)
{
    return std::ranges::copy(text, at).out;
}

char *append(char *at, int number)
{
    return std::to_chars(at, at + std::numeric_limits<int>::digits10 + 2, number).ptr;
}

} // namespace

ProcFs::Path::Path(pid_t pid, std::string_view name)
{
    *append(append(append(append(m_text, "/proc/"), pid), "/"), name) = '\0';
}

ProcFs::Path::Path(pid_t pid, int descriptor)
{
    *append(append(append(append(m_text, "/proc/"), pid), "/fd/"), descriptor) = '\0';
}

bool ProcFs::isReadable()
{
    struct statfs system;
    return statfs("/proc", &system) == 0 && system.f_type == PROC_SUPER_MAGIC &&
           NumberedEntries("/proc").isOpen();
}

std::optional<std::string_view> ProcFs::readInto(std::span<char> buffer, const char *path)
{
    const FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        return std::nullopt;
    const ssize_t length = read(file.get(), buffer.data(), buffer.size());
    if (length < 0)
        return std::nullopt;
    return std::string_view(buffer.data(), size_t(length));
}

std::string ProcFs::readAll(const char *path)
{
    const FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC));
    std::string text;
    char buffer[16 * 1024];
    for (ssize_t length = 0; (length = read(file.get(), buffer, sizeof buffer)) > 0;)
        text.append(buffer, size_t(length));
    return text;
}

std::optional<std::string_view> ProcFs::readLink(std::span<char> buffer, const char *path, int at)
{
    const ssize_t length = readlinkat(at, path, buffer.data(), buffer.size());
    if (length < 0)
        return std::nullopt;
    if (size_t(length) == buffer.size()) {
        errno = ENAMETOOLONG;
        return std::nullopt;
    }
    return std::string_view(buffer.data(), size_t(length));
}

ProcFs::NumberedEntries::NumberedEntries(const char *path)
    : m_directory(open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{}

std::optional<ProcFs::NumberedEntries::Entry> ProcFs::NumberedEntries::next()
{
    for (;;) {
        if (m_position == m_filled) {
            m_position = 0;
            m_filled = isOpen() ? getdents64(directory(), m_buffer, sizeof m_buffer) : 0;
            if (m_filled <= 0) {
                m_filled = 0;
                return std::nullopt;
            }
        }
        const auto *entry = reinterpret_cast<const dirent64 *>(m_buffer + m_position);
        m_position += entry->d_reclen;
        const char *end = entry->d_name + std::strlen(entry->d_name);
        unsigned number = 0;
        if (std::from_chars(entry->d_name, end, number).ptr == end)
            return Entry{number, entry->d_ino};
    }
}

void ProcFs::NumberedEntries::goTo(off_t place)
{
    lseek(directory(), place, SEEK_SET);
    m_filled = m_position = 0;
}

ProcFs::Descriptors::Descriptors(const char *folder)
    : m_entries(folder)
{}

ProcFs::Descriptors::Descriptors(pid_t pid)
    : Descriptors(Path(pid, "fd").text())
{}

unsigned ProcFs::Descriptors::count() const
{
    struct stat facts;
    return m_entries.isOpen() && fstat(m_entries.directory(), &facts) == 0 ? unsigned(facts.st_size) : 0;
}

std::optional<std::string_view> ProcFs::Descriptors::link(std::span<char> buffer, unsigned number) const
{
    char name[16];
    *append(name, int(number)) = '\0';
    return readLink(buffer, name, m_entries.directory());
}

std::optional<unsigned> ProcFs::Descriptors::next()
{
    while (const auto entry = m_entries.next()) {
        if (entry->number >= m_first)
            return entry->number;
    }
    return std::nullopt;
}

void ProcFs::Descriptors::skipTo(unsigned number)
{
    // The kernel's offset of a descriptor is its number plus two, for "." and "..". Checked once with this
    // process's own list, in which the list itself is one of the descriptors.
    constexpr off_t placeOfFirst = 2;
    static const bool canSkip = [] {
        Descriptors own("/proc/self/fd");
        const int list = own.m_entries.directory();
        own.m_entries.goTo(placeOfFirst + list);
        const auto entry = own.m_entries.next();
        return entry && int(entry->number) == list;
    }();
    m_first = number;
    if (canSkip)
        m_entries.goTo(placeOfFirst + off_t(number));
}

} // namespace portolan
