#pragma once

#include "Autostart.h"

namespace portolan {

/// Whether the program starts by itself when the user logs in. The desktop holds the state; nothing is kept
/// here. Main thread; reads and writes one small file.
namespace LoginItem {

using Status = Autostart::Status;

/// What the desktop holds now. Only `enabled` counts as on.
[[nodiscard]] Status status();

/// Asks for the state and returns what then holds: whether the program starts at login. A request that fails,
/// or that the desktop does not follow, shows in that alone.
bool setEnabled(bool enabled);

} // namespace LoginItem

} // namespace portolan
