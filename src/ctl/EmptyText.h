#pragma once

#include "Ink.h"

#include <QString>

namespace portolan {

/// The line shown on a terminal in place of an empty table: that nothing runs or, when `isSearching` hides
/// what does, that nothing matches. Where it would take more than `columns`, only its first half.
[[nodiscard]] QString emptyText(bool isSearching, int columns, const Ink &ink);

} // namespace portolan
