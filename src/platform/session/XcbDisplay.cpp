// SPDX-License-Identifier: MIT
#include "XcbDisplay.h"

#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <xcb/xinput.h>

namespace portolan {

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
    // $DISPLAY is host:display.screen.
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

void XcbDisplay::notifyWhenDestroyed(xcb_window_t window) const
{
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
}

std::uint8_t XcbDisplay::selectRawPresses(bool selected) const
{
    struct
    {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const events{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                   selected ? std::uint32_t(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS) : 0};
    const auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    xcb_input_xi_select_events(m_connection, screen->root, 1, &events.head);
    xcb_flush(m_connection);
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(m_connection, &xcb_input_id);
    return extension ? extension->major_opcode : 0;
}

void XcbDisplay::append(xcb_window_t window, xcb_atom_t property,
                        std::initializer_list<xcb_atom_t> values) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, window, property, XCB_ATOM_ATOM, 32,
                        uint32_t(values.size()), values.begin());
    xcb_flush(m_connection);
}

std::uint32_t XcbDisplay::number(xcb_window_t window, xcb_atom_t property) const
{
    const auto cookie = xcb_get_property(m_connection, 0, window, property, XCB_ATOM_ANY, 0, 1);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32 || reply->value_len == 0)
        return 0;
    return *static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
}

QByteArray XcbDisplay::bytes(xcb_window_t window, xcb_atom_t property) const
{
    constexpr std::uint32_t most = 1024 * 1024 / 4;
    const auto cookie = xcb_get_property(m_connection, 0, window, property, XCB_ATOM_ANY, 0, most);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}

void XcbDisplay::setText(xcb_window_t window, xcb_atom_t property, const QByteArray &text) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                        uint32_t(text.size()), text.constData());
    xcb_flush(m_connection);
}

void XcbDisplay::showWindowMenu(xcb_window_t window, QPoint position) const
{
    // The press that asks for the menu has grabbed the pointer, which the window manager needs.
    xcb_ungrab_pointer(m_connection, XCB_CURRENT_TIME);
    const auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    send(screen->root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, window,
         atom("_GTK_SHOW_WINDOW_MENU"), {0, uint32_t(position.x()), uint32_t(position.y())});
}

bool XcbDisplay::isPointerOnDesktop() const
{
    const xcb_atom_t type = atom("_NET_WM_WINDOW_TYPE");
    const xcb_atom_t desktop = atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    xcb_window_t window = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    while (window != XCB_WINDOW_NONE) {
        const std::uint32_t found = number(window, type);
        if (found != 0 && found != desktop)
            return false;
        const Owned<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, window), nullptr));
        window = pointer ? pointer->child : xcb_window_t(XCB_WINDOW_NONE);
    }
    return true;
}

int XcbDisplay::depthOfVisual(xcb_visualid_t visual) const
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (; screens.rem; xcb_screen_next(&screens)) {
        auto depths = xcb_screen_allowed_depths_iterator(screens.data);
        for (; depths.rem; xcb_depth_next(&depths)) {
            auto visuals = xcb_depth_visuals_iterator(depths.data);
            for (; visuals.rem; xcb_visualtype_next(&visuals)) {
                if (visuals.data->visual_id == visual)
                    return depths.data->depth;
            }
        }
    }
    return 0;
}

void XcbDisplay::sendMessage(xcb_window_t window, xcb_atom_t type, std::array<std::uint32_t, 5> data) const
{
    send(window, XCB_EVENT_MASK_NO_EVENT, window, type, data);
}

void XcbDisplay::send(xcb_window_t receiver, std::uint32_t mask, xcb_window_t window, xcb_atom_t type,
                      std::array<std::uint32_t, 5> data) const
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::ranges::copy(data, message.data.data32);
    xcb_send_event(m_connection, 0, receiver, mask, reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection);
}

QImage XcbDisplay::backgroundOf(xcb_window_t window) const
{
    const auto geometryOf = [this](xcb_window_t drawable) {
        return Owned<xcb_get_geometry_reply_t>(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, drawable), nullptr));
    };
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    const auto own = geometryOf(window);
    const auto parent = tree ? geometryOf(tree->parent) : nullptr;
    if (!own || !parent || own->depth != parent->depth)
        return {};

    const std::uint32_t likeParent = XCB_BACK_PIXMAP_PARENT_RELATIVE;
    xcb_change_window_attributes(m_connection, window, XCB_CW_BACK_PIXMAP, &likeParent);
    xcb_clear_area(m_connection, 0, window, 0, 0, 0, 0);
    const auto cookie =
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, own->width, own->height, ~0U);
    const Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(m_connection, cookie, nullptr));
    if (!image || xcb_get_image_data_length(image.get()) != own->width * own->height * 4)
        return {};
    return QImage(xcb_get_image_data(image.get()), own->width, own->height, QImage::Format_RGB32).copy();
}

} // namespace portolan
