#pragma once

#include "Curl.h"
#include "FileDescriptor.h"

#include <memory>

namespace portolan {

/// What WebRequests share: libcurl, driven without waiting by whoever watches `descriptor`. Belongs to one
/// thread at a time.
class WebClient
{
public:
    /// Null without libcurl, or without what the system has to give. Loading the library takes its time.
    [[nodiscard]] static std::unique_ptr<WebClient> create();
    ~WebClient();
    WebClient(const WebClient &) = delete;
    WebClient &operator=(const WebClient &) = delete;

    /// Readable, as epoll has it, when there is something for `advance` to do.
    [[nodiscard]] int descriptor() const { return m_epoll.get(); }
    /// Brings all requests on.
    void advance();

private:
    friend class WebRequest;

    explicit WebClient(const Curl &curl);
    [[nodiscard]] bool isValid() const { return m_isValid; }

    static int watchSocket(CURL *handle, curl_socket_t socket, int what, void *client, void *isWatched);
    static int setTimer(CURLM *multi, long milliseconds, void *client);

    void act(curl_socket_t socket, int what);
    void takeEnded();

    const Curl &m_curl;
    FileDescriptor m_epoll;
    FileDescriptor m_timer;
    bool m_isValid;
    std::unique_ptr<CURLM, decltype(Curl::multi_cleanup)>
        m_multi; // ends first: it may still call watchSocket()
};

} // namespace portolan
