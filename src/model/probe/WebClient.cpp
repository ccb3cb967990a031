#include "WebClient.h"

#include "WebRequest.h"

#include <array>

#include <sys/epoll.h>
#include <sys/timerfd.h>

namespace portolan {

namespace {

uint32_t epollEvents(int what)
{
    return ((what & CURL_POLL_IN) ? EPOLLIN : 0U) | ((what & CURL_POLL_OUT) ? EPOLLOUT : 0U);
}

int curlEvents(uint32_t events)
{
    return ((events & (EPOLLIN | EPOLLHUP)) ? CURL_CSELECT_IN : 0) |
           ((events & EPOLLOUT) ? CURL_CSELECT_OUT : 0) | ((events & EPOLLERR) ? CURL_CSELECT_ERR : 0);
}

} // namespace

std::unique_ptr<WebClient> WebClient::create()
{
    const Curl *const curl = Curl::library();
    if (!curl)
        return nullptr;
    std::unique_ptr<WebClient> client(new WebClient(*curl));
    return client->isValid() ? std::move(client) : nullptr;
}

WebClient::WebClient(const Curl &curl)
    : m_curl(curl)
    , m_epoll(epoll_create1(EPOLL_CLOEXEC))
    , m_timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))
    , m_multi(curl.multi_init(), curl.multi_cleanup)
{
    epoll_event event{.events = EPOLLIN, .data = {.fd = m_timer.get()}};
    m_isValid = m_multi && epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, m_timer.get(), &event) == 0;
    if (!m_isValid)
        return;
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_SOCKETFUNCTION, &watchSocket);
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_SOCKETDATA, this);
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_TIMERFUNCTION, &setTimer);
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_TIMERDATA, this);
}

WebClient::~WebClient() = default;

void WebClient::advance()
{
    std::array<epoll_event, 16> events;
    const int count = epoll_wait(m_epoll.get(), events.data(), int(events.size()), 0);
    for (int i = 0; i < count; ++i) {
        const epoll_event &event = events[size_t(i)];
        if (event.data.fd == m_timer.get()) {
            uint64_t expirations = 0;
            [[maybe_unused]] const auto length = ::read(m_timer.get(), &expirations, sizeof expirations);
            act(CURL_SOCKET_TIMEOUT, 0);
        } else {
            act(event.data.fd, curlEvents(event.events));
        }
    }
    takeEnded();
}

int WebClient::watchSocket(CURL *, curl_socket_t socket, int what, void *client, void *isWatched)
{
    auto *const self = static_cast<WebClient *>(client);
    if (what == CURL_POLL_REMOVE)
        return epoll_ctl(self->m_epoll.get(), EPOLL_CTL_DEL, socket, nullptr);
    epoll_event event{.events = epollEvents(what), .data = {.fd = socket}};
    if (isWatched)
        return epoll_ctl(self->m_epoll.get(), EPOLL_CTL_MOD, socket, &event);
    self->m_curl.multi_assign(self->m_multi.get(), socket, self);
    return epoll_ctl(self->m_epoll.get(), EPOLL_CTL_ADD, socket, &event);
}

// A time of zero would disarm the timer.
int WebClient::setTimer(CURLM *, long milliseconds, void *client)
{
    itimerspec time{};
    if (milliseconds >= 0)
        time.it_value = {.tv_sec = milliseconds / 1000, .tv_nsec = milliseconds % 1000 * 1'000'000 + 1};
    return timerfd_settime(static_cast<WebClient *>(client)->m_timer.get(), 0, &time, nullptr);
}

void WebClient::act(curl_socket_t socket, int what)
{
    int running = 0;
    m_curl.multi_socket_action(m_multi.get(), socket, what, &running);
}

void WebClient::takeEnded()
{
    int left = 0;
    while (const CURLMsg *message = m_curl.multi_info_read(m_multi.get(), &left)) {
        char *request = nullptr;
        m_curl.easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &request);
        if (message->msg == CURLMSG_DONE)
            reinterpret_cast<WebRequest *>(request)->ended();
    }
}

} // namespace portolan
