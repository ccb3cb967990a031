#pragma once

#include "FileDescriptor.h"
#include "Probe.h"
#include "RequestState.h"
#include "ResponseHead.h"

#include <cstdint>
#include <string>

#include <sys/socket.h>

namespace portolan {

/// One request to a port of this machine on a connection of its own, which ends with the response's header
/// section. Never waits: whoever owns it watches its socket and calls `advance` when that is ready.
class LocalRequest
{
public:
    /// Connects and asks, as far as that can be done at once; may have failed already.
    LocalRequest(Probe::Method method, const RequestTarget &target);

    [[nodiscard]] RequestState state() const { return m_state; }
    /// What arrived; a response once answered.
    [[nodiscard]] const ResponseHead &response() const { return m_response; }

    [[nodiscard]] int socket() const { return m_socket.get(); }
    /// The epoll events that there are to wait for while under way.
    [[nodiscard]] std::uint32_t events() const;
    /// Does what the socket is ready for. Whether something arrived.
    bool advance();

private:
    void connect(const sockaddr *address, socklen_t size);
    void send();
    bool receive();

    RequestState m_state = RequestState::failed;
    std::string m_unsent;
    FileDescriptor m_socket;
    ResponseHead m_response;
};

} // namespace portolan
