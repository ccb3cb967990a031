#include "ProbeSet.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include <sys/epoll.h>

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

ProbeSet::ProbeSet(const Curl &curl, int wakeFd)
    : m_curl(curl)
    , m_wakeFd(wakeFd)
    , m_epoll(epoll_create1(EPOLL_CLOEXEC))
    , m_multi(curl.multi_init(), curl.multi_cleanup)
{
    epoll_event event{.events = EPOLLIN, .data = {.fd = wakeFd}};
    if (!isValid() || epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, wakeFd, &event) != 0) {
        m_multi.reset();
        return;
    }
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_SOCKETFUNCTION, &watchSocket);
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_SOCKETDATA, this);
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_TIMERFUNCTION, &setTimer);
    m_curl.multi_setopt(m_multi.get(), CURLMOPT_TIMERDATA, this);
}

ProbeSet::~ProbeSet()
{
    for (const auto &[handle, probe] : m_probes)
        m_curl.multi_remove_handle(m_multi.get(), handle);
}

void ProbeSet::add(quint16 port, HealthPromise promise)
{
    auto probe = std::make_unique<Probe>(m_curl, port, std::move(promise));
    if (CURL *const handle = probe->handle())
        begin(*m_probes.emplace(handle, std::move(probe)).first->second);
}

bool ProbeSet::advance(Wait wait)
{
    std::array<epoll_event, 64> events;
    const int count = epoll_wait(m_epoll.get(), events.data(), int(events.size()),
                                 wait == Wait::yes ? waitMilliseconds() : 0);
    bool isWoken = false;
    for (int i = 0; i < count; ++i) {
        const epoll_event &event = events[size_t(i)];
        if (event.data.fd == m_wakeFd)
            isWoken = true;
        else
            handleSocket(event.data.fd, event.events);
    }
    if (Clock::now() >= m_timer) {
        m_timer = Clock::time_point::max(); // it rings once; curl sets it again if need be
        act(CURL_SOCKET_TIMEOUT, 0);
    }
    concludeEnded();
    if (Clock::now() >= m_nextDeadline)
        concludeExpired();
    return isWoken;
}

int ProbeSet::watchSocket(CURL *handle, curl_socket_t socket, int what, void *set, void *isWatched)
{
    auto *const self = static_cast<ProbeSet *>(set);
    if (what == CURL_POLL_REMOVE) {
        epoll_ctl(self->m_epoll.get(), EPOLL_CTL_DEL, socket, nullptr);
        self->m_probeOfSocket.erase(socket);
        return 0;
    }
    epoll_event event{.events = epollEvents(what), .data = {.fd = socket}};
    // Later versions of the library close connections under a handle of their own: that is no probe's.
    const auto probe = self->m_probes.find(handle);
    self->m_probeOfSocket.insert_or_assign(socket,
                                           probe == self->m_probes.end() ? nullptr : probe->second.get());
    if (isWatched)
        return epoll_ctl(self->m_epoll.get(), EPOLL_CTL_MOD, socket, &event);
    self->m_curl.multi_assign(self->m_multi.get(), socket, self);
    return epoll_ctl(self->m_epoll.get(), EPOLL_CTL_ADD, socket, &event);
}

int ProbeSet::setTimer(CURLM *, long milliseconds, void *set)
{
    static_cast<ProbeSet *>(set)->m_timer =
        milliseconds < 0 ? Clock::time_point::max() : Clock::now() + std::chrono::milliseconds(milliseconds);
    return 0;
}

int ProbeSet::waitMilliseconds() const
{
    const auto next = std::min(m_timer, m_nextDeadline);
    if (next == Clock::time_point::max())
        return -1;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now());
    return int(std::clamp<qint64>(wait.count(), 0, std::numeric_limits<int>::max()));
}

void ProbeSet::act(curl_socket_t socket, int what)
{
    int running = 0;
    m_curl.multi_socket_action(m_multi.get(), socket, what, &running);
}

void ProbeSet::handleSocket(curl_socket_t socket, uint32_t events)
{
    const auto found = m_probeOfSocket.find(socket);
    if (found == m_probeOfSocket.end())
        return;
    if (found->second && (events & EPOLLIN))
        found->second->received(Clock::now());
    act(socket, curlEvents(events));
}

void ProbeSet::concludeEnded()
{
    int left = 0;
    while (const CURLMsg *message = m_curl.multi_info_read(m_multi.get(), &left)) {
        if (message->msg == CURLMSG_DONE)
            conclude(message->easy_handle, message->data.result);
    }
}

void ProbeSet::concludeExpired()
{
    const auto now = Clock::now();
    std::vector<CURL *> expired;
    m_nextDeadline = Clock::time_point::max();
    for (const auto &[handle, probe] : m_probes) {
        if (probe->deadline() <= now)
            expired.push_back(handle);
        else
            m_nextDeadline = std::min(m_nextDeadline, probe->deadline());
    }
    for (CURL *handle : expired)
        conclude(handle, CURLE_OPERATION_TIMEDOUT);
}

void ProbeSet::conclude(CURL *handle, CURLcode code)
{
    m_curl.multi_remove_handle(m_multi.get(), handle);
    const auto found = m_probes.find(handle);
    if (!found->second->conclude(code, Clock::now())) {
        begin(*found->second);
        return;
    }
    m_probes.erase(found);
    if (m_probes.empty())
        m_nextDeadline = Clock::time_point::max();
}

void ProbeSet::begin(Probe &probe)
{
    probe.begin(Clock::now());
    m_nextDeadline = std::min(m_nextDeadline, probe.deadline());
    m_curl.multi_add_handle(m_multi.get(), probe.handle());
}
