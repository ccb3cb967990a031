#pragma once

#include "PopoverPlacement.h"

namespace portolan {

/// The screens as they are now, for placing.
namespace Screens {

/// All of them, the primary one first. Never empty: one of a usual size stands for those that are unplugged.
[[nodiscard]] QList<ScreenArea> all();

} // namespace Screens

} // namespace portolan
