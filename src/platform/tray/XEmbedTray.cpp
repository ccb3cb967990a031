// SPDX-License-Identifier: MIT
#include "XEmbedTray.h"

#include "XcbDisplay.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

namespace portolan {

XEmbedTray::XEmbedTray()
{
    const XcbDisplay display;
    if (!display)
        return;
    m_manager = display.atom("MANAGER");
    m_selection = display.atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(display.screenNumber()));
    qGuiApp->installNativeEventFilter(this);
    update();
}

bool XEmbedTray::supportsAlpha() const
{
    const XcbDisplay display;
    return display.depthOfVisual(display.number(m_owner, display.atom("_NET_SYSTEM_TRAY_VISUAL"))) == 32;
}

void XEmbedTray::embed(QWindow &window)
{
    constexpr std::uint32_t requestDock = 0;
    const XcbDisplay display;
    m_embedded = &window;
    display.sendMessage(m_owner, display.atom("_NET_SYSTEM_TRAY_OPCODE"),
                        {XCB_CURRENT_TIME, requestDock, std::uint32_t(window.winId())});
}

bool XEmbedTray::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    // The filter is installed only on X11, where every message is an XCB event.
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    switch (event->response_type & ~0x80) {
    case XCB_CLIENT_MESSAGE: {
        const auto *announcement = reinterpret_cast<const xcb_client_message_event_t *>(event);
        if (announcement->type == m_manager && announcement->data.data32[1] == m_selection)
            update();
        break;
    }
    case XCB_REPARENT_NOTIFY:
        // Shown only now: trays hide a window that is mapped before it is embedded.
        if (m_embedded &&
            reinterpret_cast<const xcb_reparent_notify_event_t *>(event)->window == m_embedded->winId())
            m_embedded->show();
        break;
    case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window == m_owner)
            update();
        break;
    }
    return false;
}

void XEmbedTray::update()
{
    const XcbDisplay display;
    const xcb_window_t owner = display.selectionOwner(m_selection);
    if (owner != XCB_WINDOW_NONE)
        display.notifyWhenDestroyed(owner);
    if (owner == m_owner)
        return;
    m_owner = owner;
    Q_EMIT changed();
}

} // namespace portolan
