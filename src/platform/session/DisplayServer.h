#pragma once

#include <QByteArray>

#include <optional>

namespace portolan {

/// The display server of this session.
namespace DisplayServer {

/// The Qt platform plug-in to use: an empty name if QT_QPA_PLATFORM is set, so that Qt follows it; no value
/// if no display server accepts a connection. X11 (XWayland) is preferred to Wayland, because a Wayland
/// client cannot place the popover at the icon. Call it before QGuiApplication is constructed, which aborts
/// the process if there is no display.
[[nodiscard]] std::optional<QByteArray> platformPlugin();

} // namespace DisplayServer

} // namespace portolan
