// SPDX-License-Identifier: MIT
#include "WindowHints.h"

#include "XcbDisplay.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace portolan {

using namespace Qt::StringLiterals;

void WindowHints::skipTaskBar(QWindow &window)
{
    const XcbDisplay display;
    if (!display)
        return;
    display.append(xcb_window_t(window.winId()), display.atom("_NET_WM_STATE"),
                   {display.atom("_NET_WM_STATE_SKIP_TASKBAR"), display.atom("_NET_WM_STATE_SKIP_PAGER")});
}

void WindowHints::setRole(QWindow &window, const QByteArray &role)
{
    if (const XcbDisplay display; display)
        display.setText(xcb_window_t(window.winId()), display.atom("WM_WINDOW_ROLE"), role);
}

void WindowHints::showMenu(QWindow &window, QPoint position)
{
    const XcbDisplay display;
    if (!display)
        return;
    // As Qt does it: a screen's size is scaled, its position is not.
    const QPoint origin = window.screen()->geometry().topLeft();
    const QPoint pixels = origin + (position - origin) * window.devicePixelRatio();
    display.showWindowMenu(xcb_window_t(window.winId()), pixels);
}

bool WindowHints::isComposited()
{
    const XcbDisplay display;
    if (!display)
        return QGuiApplication::platformName().startsWith("wayland"_L1);
    const QByteArray compositor = "_NET_WM_CM_S" + QByteArray::number(display.screenNumber());
    return display.selectionOwner(display.atom(compositor)) != XCB_WINDOW_NONE;
}

} // namespace portolan
