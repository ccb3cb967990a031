#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace portolan {

/// The geometry of one screen. Rectangles are in device-independent pixels of the virtual desktop.
struct ScreenArea
{
    QRect geometry;
    QRect available; ///< without the areas reserved by panels; `geometry` if they are unknown
    qreal scale = 1; ///< device pixels per device-independent pixel
};

/// Computes the popover's position next to the status icon. Pure functions. A list of screens is never empty
/// and starts with the primary one.
namespace PopoverPlacement {

/// The distance in pixels between the popover and the panel or the edge of the screen.
inline constexpr int Gap = 4;

/// Converts a point in device pixels, as panels report clicks, to device-independent pixels.
[[nodiscard]] QPoint fromDevicePixels(QPoint point, const QList<ScreenArea> &screens);

/// The anchor if the position of the icon is unknown: the right end of the primary screen's panel, or its top
/// right corner.
[[nodiscard]] QPoint fallbackAnchor(const QList<ScreenArea> &screens);

/// The popover's geometry for an icon at `anchor` and a content of `size`, within the available area of the
/// anchor's screen (the primary one if it is on none). The height is reduced if that area is too low.
[[nodiscard]] QRect place(QPoint anchor, QSize size, const QList<ScreenArea> &screens);

} // namespace PopoverPlacement

} // namespace portolan
