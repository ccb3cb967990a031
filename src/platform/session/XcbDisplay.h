#pragma once

#include <QByteArray>
#include <QImage>

#include <array>

#include <xcb/xcb.h>

namespace portolan {

/// The few requests to the X server that Qt has no words for, on Qt's own connection. Converts to false where
/// the display is not X11; nothing else may be called then.
class XcbDisplay
{
public:
    XcbDisplay();

    explicit operator bool() const { return m_connection; }

    /// The number of the screen that the connection was made to.
    [[nodiscard]] int screenNumber() const;
    [[nodiscard]] xcb_atom_t atom(const QByteArray &name) const;
    [[nodiscard]] xcb_window_t selectionOwner(xcb_atom_t selection) const;
    /// From now on the end of a foreign `window` arrives as an event.
    void tellWhenDestroyed(xcb_window_t window) const;
    /// Adds atoms to a window's property that is a list of atoms.
    void append(xcb_window_t window, xcb_atom_t property, std::initializer_list<xcb_atom_t> values) const;

    /// The first number of a window's property that is a list of atoms, visuals or the like; 0 if none.
    [[nodiscard]] std::uint32_t number(xcb_window_t window, xcb_atom_t property) const;
    /// How many bits the pixels of a visual have; 0 for no visual.
    [[nodiscard]] int depthOfVisual(xcb_visualid_t visual) const;
    /// Sends a message to `window` itself.
    void sendMessage(xcb_window_t window, xcb_atom_t type, std::array<std::uint32_t, 5> data) const;
    /// What would be seen where `window` is if it were clear; nothing where its parent's pixels are not like
    /// its own. The window's own content is lost.
    [[nodiscard]] QImage backgroundOf(xcb_window_t window) const;

private:
    xcb_connection_t *m_connection = nullptr;
};

} // namespace portolan
