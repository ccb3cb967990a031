#pragma once

#include <QString>

namespace portolan {

/// Where the user's own files are, and how paths below that place are recognised and shown.
namespace HomeFolder {

/// The home folder of the user in the password database (not $HOME), without trailing slash; empty when the
/// database knows none. Asked once per program run. Any thread.
[[nodiscard]] QString path();

/// Whether `folder` begins with the text of `home`. A test of plain text, not of path components: the home
/// /home/al holds /home/alex too. An empty `home` holds nothing.
[[nodiscard]] bool holds(const QString &home, const QString &folder);

/// `folder` with the text of `home` at its front replaced by "~"; unchanged where `home` does not hold it.
[[nodiscard]] QString abbreviated(const QString &folder, const QString &home);

} // namespace HomeFolder

} // namespace portolan
