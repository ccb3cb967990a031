#pragma once

namespace portolan {

/// How a request stands, whichever way it is sent.
enum class RequestState {
    underWay,
    answered, ///< there is a final response
    failed,   ///< there will be none
};

} // namespace portolan
