// SPDX-License-Identifier: MIT
#pragma once

#include "PopoverPlacement.h"

/// The current screens. Main thread.
namespace portolan::Screens {

/// All screens, the primary one first. Never empty: if no screen is connected, one of 1920 x 1080 pixels.
[[nodiscard]] QList<ScreenArea> all();

} // namespace portolan::Screens
