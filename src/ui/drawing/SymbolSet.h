// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

/// Renders the symbols of the interface. Main thread.
namespace portolan::SymbolSet {

/// The side of the square box of a symbol at font size `size`, both in device-independent pixels.
[[nodiscard]] qreal box(qreal size);

/// The stroke width in device pixels for a font size in device-independent pixels, a QFont::Weight and a
/// device pixel ratio.
[[nodiscard]] qreal stroke(qreal size, int weight, qreal scale);

/// The symbol `name` in black, in `side` x `side` pixels with strokes of `stroke` pixels; null if there is no
/// such symbol. Recent images are cached.
[[nodiscard]] QImage image(const QString &name, int side, qreal stroke);

} // namespace portolan::SymbolSet
