#pragma once

#include "PopoverPlacement.h"

/// The screens as they are now, for placing.
namespace Screens {

/// All of them, the primary one first. Never empty while there is a display.
[[nodiscard]] QList<ScreenArea> all();

} // namespace Screens
