#pragma once

#include <QImage>
#include <QStringList>

namespace portolan {

/// The symbols of the interface by name, and the rules by which they are drawn. Main thread.
namespace SymbolSet {

/// The names of all symbols.
[[nodiscard]] QStringList names();

/// The side of the square that a symbol set at font size `size` takes, both in device-independent pixels.
[[nodiscard]] qreal box(qreal size);

/// The width in device pixels of the strokes of a symbol of `size` device-independent pixels and `weight` (a
/// QFont::Weight) where `scale` device pixels make an independent one.
[[nodiscard]] qreal stroke(qreal size, int weight, qreal scale);

/// The symbol `name` on `side` x `side` pixels with strokes of `stroke` pixels, in black; null for an unknown
/// name. The last ones drawn are kept.
[[nodiscard]] QImage image(const QString &name, int side, qreal stroke);

} // namespace SymbolSet

} // namespace portolan
