#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

namespace portolan {

/// The icon theme in which panels look up the status icon by name. Only a named icon is recoloured.
namespace StatusIconTheme {

inline constexpr QLatin1StringView IconName("portolan-symbolic");

/// A folder of icon themes that contains `IconName`: the installed one, else one in the user's runtime folder
/// to which `svg` is written. Empty if neither exists.
[[nodiscard]] QString pathWithIcon(const QByteArray &svg);

} // namespace StatusIconTheme

} // namespace portolan
