#pragma once

class QWindow;

namespace portolan {

/// Wishes to the window manager that Qt has no words for.
namespace WindowHints {

/// Keeps `window` out of task bar, pager and switcher. To be called before each show, as the window manager
/// forgets it with the hide. Does nothing where the display is not X11.
void skipTaskBar(QWindow &window);

} // namespace WindowHints

} // namespace portolan
