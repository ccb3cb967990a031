#include "WindowHints.h"

#include "XcbDisplay.h"

#include <QWindow>

namespace portolan {

void WindowHints::skipTaskBar(QWindow &window)
{
    const XcbDisplay display;
    if (!display)
        return;
    display.append(xcb_window_t(window.winId()), display.atom("_NET_WM_STATE"),
                   {display.atom("_NET_WM_STATE_SKIP_TASKBAR"), display.atom("_NET_WM_STATE_SKIP_PAGER")});
}

} // namespace portolan
