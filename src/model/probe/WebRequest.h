#pragma once

#include "Probe.h"
#include "RequestState.h"
#include "ResponseHead.h"
#include "WebClient.h"

#include <memory>
#include <utility>

namespace portolan {

/// One request to an address on the web, which ends with the response's header section. Redirects are not
/// followed. It comes on while its client does.
class WebRequest
{
public:
    /// Asks; `client` must outlive the request.
    WebRequest(WebClient &client, Probe::Method method, const RequestTarget &target);
    ~WebRequest();
    WebRequest(const WebRequest &) = delete;
    WebRequest &operator=(const WebRequest &) = delete;

    [[nodiscard]] RequestState state() const { return m_state; }
    /// What arrived; a response once answered.
    [[nodiscard]] const ResponseHead &response() const { return m_response; }
    /// Whether something arrived since this was asked last.
    [[nodiscard]] bool takeReceived() { return std::exchange(m_hasReceived, false); }

private:
    friend class WebClient;

    static size_t readHeader(char *line, size_t size, size_t count, void *request);
    void ended();

    WebClient &m_client;
    RequestState m_state = RequestState::underWay;
    ResponseHead m_response;
    bool m_hasReceived = false;
    std::unique_ptr<CURL, decltype(Curl::easy_cleanup)> m_handle;
};

} // namespace portolan
