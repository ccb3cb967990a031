// SPDX-License-Identifier: MIT
#pragma once

#include "PopoverPlacement.h"

namespace portolan {

/// The current screens. Main thread.
namespace Screens {

/// All screens, the primary one first. Never empty: if no screen is connected, one of 1920 x 1080 pixels.
[[nodiscard]] QList<ScreenArea> all();

} // namespace Screens

} // namespace portolan
