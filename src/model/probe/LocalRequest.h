#pragma once

#include "FileDescriptor.h"
#include "Probe.h"
#include "ResponseHead.h"

#include <cstdint>
#include <string>

#include <sys/socket.h>

namespace portolan {

/// One HTTP request to a port of this machine, on a connection of its own that ends with the response's
/// header section. Never blocks: the owner watches `socket` and calls `advance` when it is ready. Any one
/// thread.
class LocalRequest
{
public:
    /// Connects and sends, as far as that can be done at once; may have failed already.
    LocalRequest(Probe::Method method, const RequestTarget &target);

    /// Whether there will be no response.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }
    /// What has arrived so far.
    [[nodiscard]] const ResponseHead &response() const { return m_response; }

    [[nodiscard]] int socket() const { return m_socket.get(); }
    /// The epoll events to wait for.
    [[nodiscard]] std::uint32_t events() const;
    /// Sends or receives what the socket is ready for. Whether something arrived.
    bool advance();

private:
    [[nodiscard]] bool connect(const sockaddr *address, socklen_t size);
    [[nodiscard]] bool send();
    bool receive();

    bool m_hasFailed = true;
    std::string m_unsent;
    FileDescriptor m_socket;
    ResponseHead m_response;
};

} // namespace portolan
