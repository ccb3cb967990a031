// SPDX-License-Identifier: MIT
#pragma once

/// What may stand in a shown text as it is, of all that names and folders of strangers are spelt with.
namespace portolan::Characters {

/// Whether `character` can be seen and leaves its neighbours alone. False for controls, breaks, marks of
/// direction, letters without a shape and what is no character; true for blanks, accents and the joiners that
/// emoji and some scripts are spelt with. A pure function.
[[nodiscard]] bool isShowable(char32_t character);

} // namespace portolan::Characters
