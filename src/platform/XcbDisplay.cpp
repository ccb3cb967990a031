#include "XcbDisplay.h"

#include <QGuiApplication>

#include <cstdlib>
#include <memory>

namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype([](Reply *reply) { std::free(reply); })>;

} // namespace

XcbDisplay::XcbDisplay()
{
    if (const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        m_connection = x11->connection();
}

int XcbDisplay::screenNumber() const
{
    // DISPLAY names it behind the last dot: host:display.screen.
    const QByteArray name = qgetenv("DISPLAY");
    const qsizetype dot = name.lastIndexOf('.');
    return dot > name.lastIndexOf(':') ? name.sliced(dot + 1).toInt() : 0;
}

xcb_atom_t XcbDisplay::atom(const QByteArray &name) const
{
    const auto cookie = xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.constData());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t XcbDisplay::selectionOwner(xcb_atom_t selection) const
{
    const auto cookie = xcb_get_selection_owner(m_connection, selection);
    const Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

void XcbDisplay::tellWhenDestroyed(xcb_window_t window) const
{
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
}

void XcbDisplay::append(xcb_window_t window, xcb_atom_t property,
                        std::initializer_list<xcb_atom_t> values) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, window, property, XCB_ATOM_ATOM, 32,
                        uint32_t(values.size()), values.begin());
    xcb_flush(m_connection);
}
