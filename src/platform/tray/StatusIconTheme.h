// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

/// The icon theme in which panels look up the status icon by name.
namespace portolan::StatusIconTheme {

inline constexpr QLatin1StringView iconName("portolan-symbolic");

/// Whether the panel of this desktop draws a named icon in the colour of its own texts. Others draw it in the
/// colours of its file, which cannot be seen on every panel; the icon's image can.
[[nodiscard]] bool isRecoloured();

/// A folder of icon themes that contains `iconName`: the installed one, else one in the user's runtime folder
/// to which `svg` is written. Empty if neither exists.
[[nodiscard]] QString pathWithIcon(const QByteArray &svg);

} // namespace portolan::StatusIconTheme
