#pragma once

#include <cstdlib>

namespace portolan {

/// Ends the program if a property that a fuzz target states does not hold: in every build, under every
/// driver.
inline void require(bool property)
{
    if (!property)
        std::abort();
}

} // namespace portolan
