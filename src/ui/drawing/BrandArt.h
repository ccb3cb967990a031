// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QPainterPath>

class QPainter;

/// The brand figure: a disc in the centre with three spokes that end in nodes.
namespace portolan::BrandArt {

/// The outline of the figure in `rect`, to be filled by the non-zero winding rule. The positions of the nodes
/// scale with both sides of the rectangle, the sizes of discs and spokes with the shorter one.
[[nodiscard]] QPainterPath path(const QRectF &rect);

/// Draws the figure in black in `rect`. Returns false, and draws nothing, if `painter` is null or not active.
bool draw(QPainter *painter, const QRectF &rect);

/// The figure as a template image (`QIcon::isMask`: only its alpha is used) of `size` x `size`
/// device-independent pixels. It is rendered for every requested size, so it is sharp at any scale.
[[nodiscard]] QIcon menuBarImage(int size);

/// The figure as the SVG of a symbolic icon, 16 x 16 units, which desktops recolour.
[[nodiscard]] QByteArray symbolicSvg();

} // namespace portolan::BrandArt
