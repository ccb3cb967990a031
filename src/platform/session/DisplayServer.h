#pragma once

#include <QByteArray>

#include <optional>

namespace portolan {

/// The display that the program's windows go to.
namespace DisplayServer {

/// The Qt platform plug-in for the display of this session: empty to leave the choice to Qt and the user's
/// QT_QPA_PLATFORM, no value where there is no display. Where a session offers both it is X11, by way of
/// XWayland, since a Wayland client cannot place the popover at the icon. To be asked before there is an
/// application, which ends the process where it finds no display.
[[nodiscard]] std::optional<QByteArray> platformPlugin();

} // namespace DisplayServer

} // namespace portolan
