// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

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
inline constexpr int gap = 4;

/// The position of a click on the icon that a panel reports at `reported`, in device pixels (a null point if
/// it reports none). If the two are far apart, `pointer` is right: some panels always report the same point,
/// others one in another scale. `pointer` is absent where the display does not tell the pointer's position.
[[nodiscard]] QPoint clickedPoint(QPoint reported, std::optional<QPoint> pointer,
                                  const QList<ScreenArea> &screens);

/// Whether a press at `point`, while the popover is open for an icon at `anchor`, is one on the desktop, not
/// on a panel. The popover closes by itself when its icon is clicked, which must not find it closed already.
[[nodiscard]] bool isOnDesktop(QPoint point, QPoint anchor, const QList<ScreenArea> &screens);

/// The anchor if the position of the icon is unknown: the right end of the primary screen's panel, or its top
/// right corner.
[[nodiscard]] QPoint fallbackAnchor(const QList<ScreenArea> &screens);

/// The popover's geometry for an icon at `anchor` and a content of `size`, within the available area of the
/// anchor's screen (the primary one if it is on none). The height is reduced if that area is too low.
[[nodiscard]] QRect place(QPoint anchor, QSize size, const QList<ScreenArea> &screens);

} // namespace PopoverPlacement

} // namespace portolan
