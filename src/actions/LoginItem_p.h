#pragma once

#include "LoginItem.h"

namespace portolan {

namespace LoginItem {

/// As the public one, for any autostart entry.
bool setEnabled(bool enabled, const Autostart &entry);

} // namespace LoginItem

} // namespace portolan
