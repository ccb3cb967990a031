#pragma once

class QWindow;

namespace portolan {

/// Window manager hints that Qt has no API for.
namespace WindowHints {

/// Keeps `window` out of the task bar, the pager and the window switcher. Call it before every show(): the
/// window manager removes the hint when the window is hidden. Does nothing unless the display is X11.
void skipTaskBar(QWindow &window);

} // namespace WindowHints

} // namespace portolan
