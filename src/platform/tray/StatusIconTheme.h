#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

namespace portolan {

/// Where panels find the status icon by name, which is how they can tint it.
namespace StatusIconTheme {

inline constexpr QLatin1StringView IconName("portolan-symbolic");

/// A folder of icon themes that certainly holds `IconName`: the installed one beside the program, else one
/// made from `svg` in the user's runtime folder. Empty if neither can be had.
[[nodiscard]] QString pathWithIcon(const QByteArray &svg);

} // namespace StatusIconTheme

} // namespace portolan
