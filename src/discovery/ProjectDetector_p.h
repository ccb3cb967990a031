// SPDX-License-Identifier: MIT
#pragma once

#include "ProjectDetector.h"

#include <QByteArray>
#include <QJsonObject>

namespace portolan::ProjectDetector {

/// The framework by the command name alone.
[[nodiscard]] Framework frameworkForCommand(const QString &command);

/// The framework by the dependencies in a package.json, else by the command.
[[nodiscard]] Framework frameworkFromPackage(const QJsonObject &package, const QString &command);

/// "@acme/my-cool_app" as "My Cool App"; nothing if nothing follows the scope.
[[nodiscard]] std::optional<QString> cleanName(const QString &packageName);

/// `text` with the first letter of each word in upper case and all others in lower case. Words are Unicode's:
/// white space and hyphens separate them, apostrophes and underscores within do not.
[[nodiscard]] QString capitalized(const QString &text);

/// The last component of a path; "/" for the root.
[[nodiscard]] QString lastComponent(const QString &path);

/// The project by the content of a package.json; nothing unless that is a JSON object.
[[nodiscard]] std::optional<Project> detectFromPackage(const QByteArray &json, const QString &folderName,
                                                       const QString &command);

} // namespace portolan::ProjectDetector
