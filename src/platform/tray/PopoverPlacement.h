#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace portolan {

/// What placing needs to know of one screen. Rectangles are in device-independent pixels of the virtual
/// desktop.
struct ScreenArea
{
    QRect geometry;
    QRect available; ///< what panels leave free; equal to `geometry` where the system does not tell
    qreal scale = 1; ///< device pixels per device-independent pixel
};

/// Where the popover goes: beside the status icon, on the inner side of the panel that holds the icon.
/// Pure functions; the first screen of a list is the primary one and a list is never empty.
namespace PopoverPlacement {

/// The free strip between the popover and the panel or the screen's edge.
inline constexpr int Gap = 4;

/// `point` in device pixels, as panels report a click, in the coordinates of `screens`.
[[nodiscard]] QPoint fromDevicePixels(QPoint point, const QList<ScreenArea> &screens);

/// Where to anchor when nobody knows where the icon is: the primary screen's right end of the panel, or its
/// upper right corner.
[[nodiscard]] QPoint fallbackAnchor(const QList<ScreenArea> &screens);

/// The popover's frame for an icon at `anchor` and a content of `size`. It lies wholly in the free area of
/// the anchor's screen (the primary one for an anchor on none), lower than `size` where that area is too low.
[[nodiscard]] QRect place(QPoint anchor, QSize size, const QList<ScreenArea> &screens);

} // namespace PopoverPlacement

} // namespace portolan
