#include "ProbeSet.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include <sys/epoll.h>

namespace portolan {

namespace {

// What epoll tells of besides probes.
constexpr std::uint64_t wakeId = 0;
constexpr std::uint64_t webId = 1;
constexpr std::uint64_t firstProbeId = 2;

} // namespace

ProbeSet::ProbeSet(int wakeFd)
    : m_epoll(epoll_create1(EPOLL_CLOEXEC))
    , m_isValid(watch(EPOLL_CTL_ADD, wakeFd, EPOLLIN, wakeId))
    , m_nextId(firstProbeId)
{}

ProbeSet::~ProbeSet() = default;

void ProbeSet::add(quint16 port, HealthPromise promise)
{
    const Id id = m_nextId++;
    ask(id, m_probes.try_emplace(id, port, std::move(promise)).first->second);
}

bool ProbeSet::advance(Wait wait)
{
    std::array<epoll_event, 64> events;
    const int count = epoll_wait(m_epoll.get(), events.data(), int(events.size()),
                                 wait == Wait::yes ? waitMilliseconds() : 0);
    bool isWoken = false;
    for (int i = 0; i < count; ++i) {
        switch (const Id id = events[size_t(i)].data.u64) {
        case wakeId:
            isWoken = true;
            break;
        case webId:
            advanceWeb();
            break;
        default:
            advanceLocal(id);
        }
    }
    // What has arrived counts, however late this thread comes to read it.
    const bool isAllRead = count < int(events.size());
    if (isAllRead && m_nextDeadline != Clock::time_point::max() && Clock::now() >= m_nextDeadline)
        concludeExpired();
    return isWoken;
}

int ProbeSet::waitMilliseconds() const
{
    if (m_nextDeadline == Clock::time_point::max())
        return -1;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(m_nextDeadline - Clock::now());
    return int(std::clamp<qint64>(wait.count(), 0, std::numeric_limits<int>::max()));
}

bool ProbeSet::watch(int operation, int descriptor, std::uint32_t events, Id id) const
{
    epoll_event event{.events = events, .data = {.u64 = id}};
    return epoll_ctl(m_epoll.get(), operation, descriptor, &event) == 0;
}

// The probe may have ended, or gone on to another connection, since the event came.
void ProbeSet::advanceLocal(Id id)
{
    const auto found = m_probes.find(id);
    if (found == m_probes.end() || !found->second.local)
        return;
    Item &item = found->second;
    if (item.local->advance())
        item.probe.received(Clock::now());
    follow(id, item);
}

void ProbeSet::advanceWeb()
{
    m_webClient->advance();
    std::vector<Id> asking;
    for (auto &[id, item] : m_probes) {
        if (item.web)
            asking.push_back(id);
    }
    for (const Id id : asking) {
        Item &item = m_probes.at(id);
        if (item.web->takeReceived())
            item.probe.received(Clock::now());
        follow(id, item);
    }
}

void ProbeSet::concludeExpired()
{
    const auto now = Clock::now();
    std::vector<Id> expired;
    m_nextDeadline = Clock::time_point::max();
    for (const auto &[id, item] : m_probes) {
        if (item.probe.deadline() <= now)
            expired.push_back(id);
        else
            m_nextDeadline = std::min(m_nextDeadline, item.probe.deadline());
    }
    for (const Id id : expired)
        conclude(id, m_probes.at(id), nullptr);
}

// Starts the request that the probe is at.
void ProbeSet::ask(Id id, Item &item)
{
    m_nextDeadline = std::min(m_nextDeadline, item.probe.deadline());
    item.web.reset();
    item.local.reset();
    item.watchedEvents = 0;
    if (item.probe.target().isLocal()) {
        item.local.emplace(item.probe.method(), item.probe.target());
    } else {
        if (!startWeb()) {
            item.probe.settleForRedirect(Clock::now());
            remove(id);
            return;
        }
        item.web.emplace(*m_webClient, item.probe.method(), item.probe.target());
    }
    follow(id, item);
}

// Whether there is something to ask elsewhere with.
bool ProbeSet::startWeb()
{
    if (!m_webClient) {
        m_webClient = WebClient::create();
        if (m_webClient && !watch(EPOLL_CTL_ADD, m_webClient->descriptor(), EPOLLIN, webId))
            m_webClient.reset();
    }
    return m_webClient != nullptr;
}

// Goes on from how the request stands now.
void ProbeSet::follow(Id id, Item &item)
{
    const RequestState state = item.local ? item.local->state() : item.web->state();
    if (state == RequestState::answered) {
        conclude(id, item, item.local ? &item.local->response() : &item.web->response());
    } else if (state == RequestState::failed) {
        conclude(id, item, nullptr);
    } else if (item.local && item.local->events() != item.watchedEvents) {
        const int operation = item.watchedEvents == 0 ? EPOLL_CTL_ADD : EPOLL_CTL_MOD;
        item.watchedEvents = item.local->events();
        if (!watch(operation, item.local->socket(), item.watchedEvents, id))
            conclude(id, item, nullptr);
    }
}

// The request has ended, with a response or without.
void ProbeSet::conclude(Id id, Item &item, const ResponseHead *response)
{
    const auto now = Clock::now();
    const Probe::Next next = response ? item.probe.answered(*response, now) : item.probe.failed(now);
    if (next == Probe::Next::ask) {
        ask(id, item);
        return;
    }
    remove(id);
}

void ProbeSet::remove(Id id)
{
    m_probes.erase(id);
    if (m_probes.empty())
        m_nextDeadline = Clock::time_point::max();
}

} // namespace portolan
