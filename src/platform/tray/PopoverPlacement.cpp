// SPDX-License-Identifier: MIT
#include "PopoverPlacement.h"

#include <algorithm>
#include <array>
#include <utility>

namespace portolan {

namespace {

// Half the size of an icon, which is kept free around the anchor if no panel is known to be there.
constexpr int anchorRadius = 12;

// Farther from each other than this, two points are not on the same icon.
constexpr int iconDistance = 64;

enum class Edge { Top, Bottom, Left, Right };

const ScreenArea &screenAt(QPoint point, const QList<ScreenArea> &screens)
{
    const auto found = std::ranges::find_if(
        screens, [point](const ScreenArea &screen) { return screen.geometry.contains(point); });
    return found != screens.end() ? *found : screens.first();
}

// The edge that `point` is nearest to, or farthest outside of. `bias` favours the top and bottom edges.
Edge nearestEdge(QPoint point, const QRect &area, int bias)
{
    const std::array<std::pair<int, Edge>, 4> distances{{
        {point.y() - area.top() - bias, Edge::Top},
        {area.bottom() - point.y() - bias, Edge::Bottom},
        {point.x() - area.left(), Edge::Left},
        {area.right() - point.x(), Edge::Right},
    }};
    return std::ranges::min_element(distances, {}, &std::pair<int, Edge>::first)->second;
}

// The edge of the screen whose reserved area contains the anchor. A panel that reserves no area is assumed at
// the nearest edge, or in a corner at the top or bottom, where most panels are.
Edge panelEdge(QPoint anchor, const ScreenArea &screen)
{
    constexpr int cornerSize = 48;
    return screen.available.contains(anchor) ? nearestEdge(anchor, screen.geometry, cornerSize)
                                             : nearestEdge(anchor, screen.available, 0);
}

int clampedStart(int start, int length, int low, int high)
{
    return std::max(low, std::min(start, high - length));
}

// Converts a point in device pixels, as panels report clicks, to device-independent pixels.
QPoint fromDevicePixels(QPoint point, const QList<ScreenArea> &screens)
{
    // Qt scales the size of a screen but not its top left corner.
    const auto holds = [point](const ScreenArea &screen) {
        return QRect(screen.geometry.topLeft(), screen.geometry.size() * screen.scale).contains(point);
    };
    const auto found = std::ranges::find_if(screens, holds);
    const ScreenArea &screen = found != screens.end() ? *found : screens.first();
    const QPoint origin = screen.geometry.topLeft();
    return origin + (point - origin) / screen.scale;
}

} // namespace

QPoint PopoverPlacement::clickedPoint(QPoint reported, std::optional<QPoint> pointer,
                                      const QList<ScreenArea> &screens)
{
    if (reported.isNull())
        return pointer.value_or(fallbackAnchor(screens));
    const QPoint point = fromDevicePixels(reported, screens);
    return pointer && (*pointer - point).manhattanLength() > iconDistance ? *pointer : point;
}

bool PopoverPlacement::isOnDesktop(QPoint point, QPoint anchor, const QList<ScreenArea> &screens)
{
    return screenAt(point, screens).available.contains(point) &&
           (point - anchor).manhattanLength() > iconDistance;
}

QPoint PopoverPlacement::fallbackAnchor(const QList<ScreenArea> &screens)
{
    const auto &[geometry, available, scale] = screens.first();
    const bool panelBelow = geometry.bottom() - available.bottom() > available.top() - geometry.top();
    return panelBelow ? geometry.bottomRight() : geometry.topRight();
}

QRect PopoverPlacement::place(QPoint anchor, QSize size, const QList<ScreenArea> &screens)
{
    const ScreenArea &screen = screenAt(anchor, screens);
    const QRect free = screen.available.adjusted(gap, gap, -gap, -gap);
    const QSize fitting(size.width(), std::min(size.height(), free.height()));
    const QRect icon(anchor - QPoint(anchorRadius, anchorRadius),
                     anchor + QPoint(anchorRadius, anchorRadius));
    const bool panelKnown = !screen.available.contains(anchor);

    QRect frame(QPoint(anchor.x() - fitting.width() / 2, anchor.y() - fitting.height() / 2), fitting);
    switch (panelEdge(anchor, screen)) {
    case Edge::Top:
        frame.moveTop(panelKnown ? free.top() : icon.bottom() + 1 + gap);
        break;
    case Edge::Bottom:
        frame.moveBottom(panelKnown ? free.bottom() : icon.top() - 1 - gap);
        break;
    case Edge::Left:
        frame.moveLeft(panelKnown ? free.left() : icon.right() + 1 + gap);
        break;
    case Edge::Right:
        frame.moveRight(panelKnown ? free.right() : icon.left() - 1 - gap);
        break;
    }
    frame.moveLeft(clampedStart(frame.left(), frame.width(), free.left(), free.right() + 1));
    frame.moveTop(clampedStart(frame.top(), frame.height(), free.top(), free.bottom() + 1));
    return frame;
}

} // namespace portolan
