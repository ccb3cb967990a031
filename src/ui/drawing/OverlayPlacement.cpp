// SPDX-License-Identifier: MIT
#include "OverlayPlacement.h"

#include <algorithm>

namespace portolan {

namespace {

constexpr qreal menuGap = 4;
constexpr qreal toolTipGap = 6;
constexpr qreal toolTipMargin = 4;

QPointF inside(const QPointF &corner, const QSizeF &size, const QRectF &bounds)
{
    return {std::max(bounds.left(), std::min(corner.x(), bounds.right() - size.width())),
            std::max(bounds.top(), std::min(corner.y(), bounds.bottom() - size.height()))};
}

} // namespace

QPointF OverlayPlacement::menu(const QRectF &anchor, const QSizeF &size, const QRectF &bounds)
{
    // A menu that opens at the pointer starts exactly there.
    const qreal gap = anchor.isEmpty() ? 0 : menuGap;
    const bool fitsRight = anchor.left() + size.width() <= bounds.right();
    const bool fitsBelow = anchor.bottom() + gap + size.height() <= bounds.bottom();
    const QPointF corner(fitsRight ? anchor.left() : anchor.right() - size.width(),
                         fitsBelow ? anchor.bottom() + gap : anchor.top() - gap - size.height());
    return inside(corner, size, bounds);
}

QPointF OverlayPlacement::toolTip(const QRectF &target, const QSizeF &size, const QRectF &bounds)
{
    const QRectF available = bounds.adjusted(toolTipMargin, toolTipMargin, -toolTipMargin, -toolTipMargin);
    const bool fitsBelow = target.bottom() + toolTipGap + size.height() <= available.bottom();
    const QPointF corner(target.center().x() - size.width() / 2,
                         fitsBelow ? target.bottom() + toolTipGap
                                   : target.top() - toolTipGap - size.height());
    return inside(corner, size, available);
}

} // namespace portolan
