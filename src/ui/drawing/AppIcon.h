// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// The application icon: the brand figure, dark on a light tile, so that it is visible on any panel.
namespace portolan::AppIcon {

/// The icon in `size` x `size` pixels.
[[nodiscard]] QImage image(int size);

} // namespace portolan::AppIcon
