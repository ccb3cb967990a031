// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVariant>

/// The settings that a desktop's settings daemon hands to X11 programs (XSETTINGS). Main thread.
namespace portolan::XSettings {

/// The current settings by their names, as integers and strings; empty if there is no daemon or no X11.
[[nodiscard]] QVariantHash read();

/// The settings in `data`, the content of the daemon's property, up to the first that is malformed.
[[nodiscard]] QVariantHash parse(const QByteArray &data);

} // namespace portolan::XSettings
