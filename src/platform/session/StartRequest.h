#pragma once

namespace portolan {

/// What a start of the program asks of the one that runs.
enum class StartRequest {
    None,   ///< a start in the background has nothing to ask for
    Open,   ///< show the list
    Window, ///< show it in the window
};

} // namespace portolan
