#pragma once

#include <QColor>
#include <QIcon>
#include <QPainterPath>

class QPainter;

namespace portolan {

/// The brand figure: a disc in the centre with three spokes that end in nodes.
namespace BrandArt {

/// The figure fitted into `rect`, as one outline to be filled with the non-zero winding rule. The nodes
/// follow the rectangle's sides; discs and spokes keep their proportion to the shorter one.
[[nodiscard]] QPainterPath path(const QRectF &rect);

/// Fills the figure into `rect` and returns true; without an active painter draws nothing and returns false.
bool draw(QPainter *painter, const QRectF &rect, const QColor &color = Qt::black);

/// The figure as a template for the status area, `size` device-independent pixels square: only its alpha is
/// meant to be used (`QIcon::isMask`). Drawn anew at each size asked for, so sharp at every scale.
[[nodiscard]] QIcon menuBarImage(int size);

/// The figure as a symbolic icon of 16 x 16 units that desktops recolour.
[[nodiscard]] QByteArray symbolicSvg();

} // namespace BrandArt

} // namespace portolan
