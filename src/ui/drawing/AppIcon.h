// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace portolan {

/// The application icon: the brand figure, dark on a light tile, so that it is visible on any panel.
namespace AppIcon {

/// The icon in `size` x `size` pixels.
[[nodiscard]] QImage image(int size);

} // namespace AppIcon

} // namespace portolan
