#include "ProjectFolder.h"

#include "FileDescriptor.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace portolan {

namespace {

/// The first `size` bytes, or what there is of them: a file may shrink while it is read. Nothing on an error.
std::optional<QByteArray> readBytes(int descriptor, qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < size) {
        const ssize_t count = read(descriptor, bytes.data() + filled, size_t(size - filled));
        if (count == 0)
            break;
        if (count < 0 && errno != EINTR)
            return std::nullopt;
        filled += std::max<ssize_t>(count, 0);
    }
    bytes.truncate(filled);
    return bytes;
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
    return readBytes(file.get(), facts.st_size);
}

} // namespace portolan
