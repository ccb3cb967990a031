#include "ProjectFolder.h"

#include "FileDescriptor.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

/// Up to end of file; nothing on an error or if there is more than `most` (a file may grow while it is read).
std::optional<QByteArray> readToEnd(int descriptor, qsizetype expected, qsizetype most)
{
    QByteArray bytes;
    bytes.reserve(expected);
    std::array<char, 16 * 1024> buffer;
    for (;;) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count == 0)
            return bytes;
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || bytes.size() + count > most)
            return std::nullopt;
        bytes.append(buffer.data(), count);
    }
}

} // namespace

ProjectFolder::ProjectFolder(const QString &path)
    : m_path(path.startsWith(u'/') ? QFile::encodeName(path) + '/' : QByteArray())
{}

bool ProjectFolder::contains(const char *name) const
{
    struct stat facts;
    return isThere() && stat((m_path + name).constData(), &facts) == 0;
}

bool ProjectFolder::containsNameWithSuffix(QByteArrayView suffix) const
{
    const int listing = isThere() ? open(m_path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(listing < 0 ? nullptr : fdopendir(listing), closedir);
    if (!entries)
        return false;
    while (const dirent *entry = readdir(entries.get())) {
        if (QByteArrayView(entry->d_name).endsWith(suffix))
            return true;
    }
    return false;
}

std::optional<QByteArray> ProjectFolder::read(const char *name) const
{
    if (!isThere())
        return std::nullopt;
    // Opened before it is looked at, so that it cannot be exchanged in between; O_NONBLOCK for FIFOs and
    // devices.
    const FileDescriptor file(
        open((m_path + name).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat facts;
    if (!file.isOpen() || fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return std::nullopt;
    // Files of /proc and the like call themselves regular and empty, and may block or never end.
    if (facts.st_size <= 0 || facts.st_size > maxFileSize)
        return std::nullopt;
    return readToEnd(file.get(), facts.st_size, maxFileSize);
}
