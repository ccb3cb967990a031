// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Where the user's own files are, and how paths below that place are recognised and shown.
namespace portolan::HomeFolder {

/// The home folder of the user in the password database (not $HOME), without trailing slash; empty when the
/// database knows none. Asked once per program run. Any thread.
[[nodiscard]] QString path();

/// `home`, and the path it leads to where that differs: behind a symbolic link, the working folder of a
/// process has the second name. Asks the file system.
[[nodiscard]] QStringList namesOf(const QString &home);

/// The names of path(). Asked once per program run. Any thread.
[[nodiscard]] QStringList paths();

/// Whether `folder` begins with the text of one of `homes`. A test of plain text, not of path components: the
/// home /home/al holds /home/alex too. An empty home holds nothing.
[[nodiscard]] bool holds(const QStringList &homes, const QString &folder);

/// `folder` with the text of the first of `homes` that holds it replaced by "~"; unchanged where none does.
[[nodiscard]] QString abbreviated(const QString &folder, const QStringList &homes);

} // namespace portolan::HomeFolder
