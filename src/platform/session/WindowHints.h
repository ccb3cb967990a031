// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPoint>

class QWindow;

/// What Qt has no API for between a window and the window manager.
namespace portolan::WindowHints {

/// Keeps `window` out of the task bar, the pager and the window switcher. Call it before every show(): the
/// window manager removes the hint when the window is hidden. Does nothing unless the display is X11.
void skipTaskBar(QWindow &window);

/// Sets the role by which rules of the window manager find `window`. Call it before every show(): the window
/// is a new one then. Does nothing unless the display is X11.
void setRole(QWindow &window, const QByteArray &role);

/// Opens the window manager's menu of `window` at `position`, in device-independent pixels of the virtual
/// desktop. Does nothing where the window manager does not offer it.
void showMenu(QWindow &window, QPoint position);

/// Whether translucent windows are blended with what is below them.
[[nodiscard]] bool isComposited();

} // namespace portolan::WindowHints
