// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "RequestTarget.h"
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
    /// Connects to `target` and sends `text`, as far as that does not block; may have failed already.
    LocalRequest(const RequestTarget &target, std::string text);

    /// Whether there will be no response.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }
    /// Whether it failed because nothing listens at the address.
    [[nodiscard]] bool wasRefused() const { return m_wasRefused; }
    /// Whether it failed because the system has no descriptor or port left, not because of the server.
    [[nodiscard]] bool lacksResources() const { return m_lacksResources; }
    /// What has arrived so far.
    [[nodiscard]] const ResponseHead &response() const { return m_response; }

    [[nodiscard]] int socket() const { return m_socket.get(); }
    /// The epoll events to wait for.
    [[nodiscard]] std::uint32_t events() const;
    /// Sends or receives what the socket is ready for. Returns whether something arrived.
    bool advance();

private:
    [[nodiscard]] bool connect(const sockaddr *address, socklen_t size);
    [[nodiscard]] bool send();
    bool receive();

    bool m_hasFailed = true;
    bool m_wasRefused = false;
    bool m_lacksResources = false;
    std::string m_unsent;
    FileDescriptor m_socket;
    ResponseHead m_response;
};

} // namespace portolan
