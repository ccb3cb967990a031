#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

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

private:
    xcb_connection_t *m_connection = nullptr;
};
