#pragma once

#include <QImage>

namespace portolan {

/// The program's own icon: the brand figure, dark on a light tile, to be told from a panel of any colour.
namespace AppIcon {

/// The icon on `size` x `size` pixels.
[[nodiscard]] QImage image(int size);

} // namespace AppIcon

} // namespace portolan
