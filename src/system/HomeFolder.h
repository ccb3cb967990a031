// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The user's home folder, and how paths below it are recognised and shown.
namespace portolan::HomeFolder {

/// The home folder of the user in the password database (not $HOME), without trailing slash; empty if the
/// database has none. Looked up once. Any thread.
[[nodiscard]] QString path();

/// `home`, and its canonical path where that differs: if `home` is a symbolic link, the kernel reports
/// working folders by the second name. Accesses the file system.
[[nodiscard]] QStringList namesOf(const QString &home);

/// namesOf(path()). Looked up once. Any thread.
[[nodiscard]] QStringList paths();

/// Whether `folder` begins with the text of one of `homes`. Compares text, not path components: /home/al also
/// holds /home/alex. An empty home holds nothing.
[[nodiscard]] bool holds(const QStringList &homes, const QString &folder);

/// `folder` with the text of the first of `homes` that holds it replaced by "~"; unchanged where none does.
[[nodiscard]] QString abbreviated(const QString &folder, const QStringList &homes);

} // namespace portolan::HomeFolder
