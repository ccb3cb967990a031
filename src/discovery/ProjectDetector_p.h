// SPDX-License-Identifier: MIT
#pragma once

#include "ProjectDetector.h"

#include <QByteArray>
#include <QJsonObject>

namespace portolan::ProjectDetector {

/// What the command name alone says.
[[nodiscard]] Framework frameworkForCommand(const QString &command);

/// What the dependencies in a package.json say, else the command.
[[nodiscard]] Framework frameworkFromPackage(const QJsonObject &package, const QString &command);

/// "@acme/my-cool_app" as "My Cool App"; nothing if nothing follows the scope.
[[nodiscard]] std::optional<QString> cleanName(const QString &packageName);

/// In each word the first letter in upper case and all others in lower case. Words are Unicode's: white space
/// and hyphens part them, apostrophes and low lines within do not.
[[nodiscard]] QString capitalized(const QString &text);

/// The last component of a path; "/" for the root.
[[nodiscard]] QString lastComponent(const QString &path);

/// What the bytes of a package.json say; nothing unless they are a JSON object.
[[nodiscard]] std::optional<Project> detectFromPackage(const QByteArray &json, const QString &folderName,
                                                       const QString &command);

} // namespace portolan::ProjectDetector
