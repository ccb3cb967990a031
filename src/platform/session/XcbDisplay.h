// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QPoint>

#include <array>

#include <xcb/xcb.h>

namespace portolan {

/// Requests to the X server that Qt has no API for, sent over Qt's own connection. Converts to false if the
/// display is not X11; then no other member may be called. Main thread.
class XcbDisplay
{
public:
    XcbDisplay();

    explicit operator bool() const { return m_connection; }

    /// The number of the connection's default screen.
    [[nodiscard]] int screenNumber() const;
    [[nodiscard]] xcb_atom_t atom(const QByteArray &name) const;
    [[nodiscard]] xcb_window_t selectionOwner(xcb_atom_t selection) const;
    /// Subscribes to the DestroyNotify event of `window`, which may be another client's.
    void notifyWhenDestroyed(xcb_window_t window) const;
    /// Has the press of any pointer button anywhere reported as a raw event, or no longer; returns the number
    /// of the extension whose event it is.
    std::uint8_t selectRawPresses(bool selected) const;
    /// Appends `values` to a property that is a list of atoms.
    void append(xcb_window_t window, xcb_atom_t property, std::initializer_list<xcb_atom_t> values) const;
    /// The first value of a 32-bit property; 0 if there is none.
    [[nodiscard]] std::uint32_t number(xcb_window_t window, xcb_atom_t property) const;
    /// The value of a property of 8-bit units; empty if there is none.
    [[nodiscard]] QByteArray bytes(xcb_window_t window, xcb_atom_t property) const;
    /// Sets a property that is a text.
    void setText(xcb_window_t window, xcb_atom_t property, const QByteArray &text) const;
    /// Asks the window manager for its menu of `window` at `position` of the root window.
    void showWindowMenu(xcb_window_t window, QPoint position) const;
    /// Whether the pointer is over no window with a type (_NET_WM_WINDOW_TYPE) other than that of a desktop.
    [[nodiscard]] bool isPointerOnDesktop() const;
    /// The depth of a visual in bits per pixel; 0 if it is unknown.
    [[nodiscard]] int depthOfVisual(xcb_visualid_t visual) const;
    /// Sends a client message to `window`.
    void sendMessage(xcb_window_t window, xcb_atom_t type, std::array<std::uint32_t, 5> data) const;
    /// The parent's background behind `window`; a null image if the two have different depths. Clears the
    /// window.
    [[nodiscard]] QImage backgroundOf(xcb_window_t window) const;

private:
    void send(xcb_window_t receiver, std::uint32_t mask, xcb_window_t window, xcb_atom_t type,
              std::array<std::uint32_t, 5> data) const;

    xcb_connection_t *m_connection = nullptr;
};

} // namespace portolan
