// SPDX-License-Identifier: MIT
#pragma once

namespace portolan {

/// What a start of the program requests, of itself or of the instance that already runs.
enum class StartRequest {
    None,   ///< nothing: started in the background
    Open,   ///< show the popover
    Window, ///< show the window
};

} // namespace portolan
