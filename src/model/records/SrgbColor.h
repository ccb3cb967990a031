// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace portolan {

/// An opaque colour in the sRGB colour space; each component is the fraction value/255.
struct SrgbColor
{
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;

    friend constexpr bool operator==(const SrgbColor &, const SrgbColor &) = default;
};

} // namespace portolan
