#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace portolan {

/// The files directly in one folder, looked at without trust in what they are: nothing is waited for but the
/// file system itself, and nothing but a regular file of a sane size is read. A folder that is not there has
/// no files.
class ProjectFolder
{
public:
    static constexpr qint64 maxFileSize = qint64(4) * 1024 * 1024;

    /// `path` is absolute; any other text is a folder that is not there.
    explicit ProjectFolder(const QString &path);

    /// Whether there is something of exactly this name.
    [[nodiscard]] bool contains(const char *name) const;
    /// Whether the name of any direct entry, hidden ones included, ends with `suffix`; false if it cannot be
    /// listed.
    [[nodiscard]] bool containsNameWithSuffix(QByteArrayView suffix) const;
    /// The bytes of a regular file of 1 byte to `maxFileSize`; nothing for anything else.
    [[nodiscard]] std::optional<QByteArray> read(const char *name) const;

private:
    [[nodiscard]] bool isThere() const { return !m_path.isEmpty(); }

    const QByteArray m_path; ///< with a slash at its end; empty if none was given
};

} // namespace portolan
