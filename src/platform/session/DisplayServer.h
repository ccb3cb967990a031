// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPoint>

#include <optional>

/// The display server of this session.
namespace portolan::DisplayServer {

/// The Qt platform plug-in to use: an empty name if QT_QPA_PLATFORM is set, so that Qt follows it; no value
/// if no display server accepts a connection. X11 (Xwayland) is preferred to Wayland, because a Wayland
/// client cannot place the popover at the icon; but not on sway with a scaled output, which magnifies X11
/// windows and does not let them choose their place either. Call it before QGuiApplication is constructed,
/// which aborts the process if there is no display.
[[nodiscard]] std::optional<QByteArray> platformPlugin();

/// Whether a window may choose its place, which only X11 allows. Needs the QGuiApplication.
[[nodiscard]] bool canPlaceWindows();

/// Where the pointer is, in device-independent pixels of the virtual desktop. Xwayland knows it only while it
/// is over X11 windows, and Wayland does not tell: no value. Needs the QGuiApplication.
[[nodiscard]] std::optional<QPoint> pointer();

/// Whether the pointer is over no window that tells its type, except that of the desktop's background. True
/// where the display is not X11.
[[nodiscard]] bool isPointerOnDesktop();

} // namespace portolan::DisplayServer
