// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

namespace portolan {

/// Aborts if `property` is false; unlike assert() in release builds too.
inline void require(bool property)
{
    if (!property)
        std::abort();
}

} // namespace portolan
