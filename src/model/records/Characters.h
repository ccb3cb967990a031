// SPDX-License-Identifier: MIT
#pragma once

/// Which characters of untrusted names and folders may be shown unchanged.
namespace portolan::Characters {

/// Whether `character` is visible and does not affect its neighbours. False for controls, line breaks,
/// directional marks, invisible letters and noncharacters; true for spaces, accents and the joiners that
/// emoji and some scripts need. A pure function.
[[nodiscard]] bool isShowable(char32_t character);

} // namespace portolan::Characters
