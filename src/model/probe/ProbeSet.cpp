// SPDX-License-Identifier: MIT
#include "ProbeSet.h"

#include "DescriptorLimit.h"
#include "OffHostClient.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <vector>

#include <malloc.h>
#include <sys/epoll.h>

namespace portolan {

namespace {

// The epoll events that are not of requests.
constexpr std::uint64_t wakeId = 0;
constexpr std::uint64_t offHostId = 1;
constexpr std::uint64_t firstRequestId = 2;

// Probes are started a few at a time, so that starting the others hardly adds to measured response times.
constexpr int startsAtOnce = 8;

constexpr std::size_t muchMemory = 1024; // bytes; an ordinary response takes a tenth of that

} // namespace

int ProbeSet::mostUnderWay(int descriptorLimit)
{
    // For what a desktop program keeps open, and what a scan or a click opens.
    const int others = std::max(24, descriptorLimit / 4);
    return std::clamp(descriptorLimit - others, 1, maxUnderWay);
}

ProbeSet::ProbeSet(int wakeFd)
    : m_epoll(epoll_create1(EPOLL_CLOEXEC))
    , m_isValid(watch(EPOLL_CTL_ADD, wakeFd, EPOLLIN, wakeId))
    , m_mostUnderWay(size_t(mostUnderWay(DescriptorLimit::current())))
    , m_nextId(firstRequestId)
{}

ProbeSet::~ProbeSet() = default;

void ProbeSet::add(ProbeRequest probe)
{
    m_waiting.push_back(std::move(probe));
}

bool ProbeSet::canStart() const
{
    return !m_waiting.empty() && !m_isShort && m_items.size() < m_mostUnderWay;
}

void ProbeSet::startWaiting()
{
    for (int i = 0; i < startsAtOnce && canStart(); ++i) {
        Probe probe(std::move(m_waiting.front()), Clock::now());
        m_waiting.pop_front();
        startRequest(m_items.try_emplace(m_nextId, Item{std::move(probe), {}}).first);
    }
}

bool ProbeSet::advance()
{
    startWaiting();
    std::array<epoll_event, 64> events;
    const int count =
        epoll_wait(m_epoll.get(), events.data(), int(events.size()), canStart() ? 0 : waitMilliseconds());
    bool isWoken = false;
    for (int i = 0; i < count; ++i) {
        switch (const Id id = events[size_t(i)].data.u64) {
        case wakeId:
            isWoken = true;
            break;
        case offHostId:
            takeOffHostReports();
            break;
        default:
            advanceLocal(id);
        }
    }
    // What has arrived counts, however late this thread reads it.
    const bool isAllRead = count < int(events.size());
    if (isAllRead && m_nextDeadline != Clock::time_point::max() && Clock::now() >= m_nextDeadline)
        endExpired();
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

// An event or a report may belong to a request that has ended since: then no item has its number.
void ProbeSet::advanceLocal(Id id)
{
    const auto item = m_items.find(id);
    if (item == m_items.end())
        return;
    if (item->second.local->advance())
        item->second.probe.received(Clock::now());
    continueLocal(item);
}

void ProbeSet::takeOffHostReports()
{
    for (const auto &[id, report] : m_offHost->takeReports()) {
        const auto item = m_items.find(id);
        if (item == m_items.end())
            continue;
        if (!report.hasEnded)
            item->second.probe.received(Clock::now());
        else if (report.lacksResources)
            postpone(item);
        else if (report.response.state() == ResponseHead::State::Complete)
            endRequest(item, &report.response);
        else
            endRequest(item, nullptr);
    }
}

void ProbeSet::endExpired()
{
    const auto now = Clock::now();
    std::vector<Id> expired;
    m_nextDeadline = Clock::time_point::max();
    for (const auto &[id, item] : m_items) {
        if (item.probe.deadline() <= now)
            expired.push_back(id);
        else
            m_nextDeadline = std::min(m_nextDeadline, item.probe.deadline());
    }
    for (const Id id : expired)
        endRequest(m_items.find(id), nullptr);
}

// Starts the probe's current request. Each has a number of its own, so that a late report of an earlier one
// is recognised.
void ProbeSet::startRequest(Items::iterator old)
{
    auto node = m_items.extract(old);
    const Id id = node.key() = m_nextId++;
    const auto item = m_items.insert(std::move(node)).position;
    auto &[probe, local, watchedEvents] = item->second;
    m_nextDeadline = std::min(m_nextDeadline, probe.deadline());
    local.reset();
    watchedEvents = 0;
    if (probe.target().isLocal()) {
        local.emplace(probe.target(), probe.requestText());
        continueLocal(item);
    } else if (offHost()) {
        m_offHost->start(id, probe.target(), probe.requestText());
    } else {
        postpone(item);
    }
}

// Null if no descriptor is available.
OffHostClient *ProbeSet::offHost()
{
    if (!m_offHost) {
        m_offHost = std::make_unique<OffHostClient>();
        if (!watch(EPOLL_CTL_ADD, m_offHost->descriptor(), EPOLLIN, offHostId))
            m_offHost.reset();
    }
    return m_offHost.get();
}

void ProbeSet::continueLocal(Items::iterator item)
{
    auto &[probe, local, watchedEvents] = item->second;
    if (local->lacksResources()) {
        postpone(item);
    } else if (local->hasFailed()) {
        endRequest(item, nullptr);
    } else if (local->response().state() == ResponseHead::State::Complete) {
        endRequest(item, &local->response());
    } else if (local->events() != watchedEvents) {
        const int operation = watchedEvents == 0 ? EPOLL_CTL_ADD : EPOLL_CTL_MOD;
        watchedEvents = local->events();
        if (!watch(operation, local->socket(), watchedEvents, item->first))
            postpone(item);
    }
}

// The request has ended, with or without a response; the probe continues with its next one or ends too.
void ProbeSet::endRequest(Items::iterator item, const ResponseHead *response)
{
    auto &[probe, local, watchedEvents] = item->second;
    if (!local && m_offHost)
        m_offHost->cancel(item->first);
    m_hadMuch |= local && local->response().size() > muchMemory;
    const auto now = Clock::now();
    const Probe::Next next =
        response ? probe.answered(*response, now) : probe.failed(now, local && local->wasRefused());
    if (next == Probe::Next::Request) {
        startRequest(item);
        return;
    }
    erase(item);
}

void ProbeSet::erase(Items::iterator item)
{
    m_items.erase(item);
    m_isShort = false;
    if (!m_items.empty())
        return;
    m_nextDeadline = Clock::time_point::max();
    // The memory of many long responses is fragmented and would not go back to the system by itself.
    if (std::exchange(m_hadMuch, false))
        malloc_trim(0);
}

// The system lacks the resources for the request. The probe starts again once another has ended; if there is
// no other, the result is unknown.
void ProbeSet::postpone(Items::iterator item)
{
    if (!item->second.local && m_offHost)
        m_offHost->cancel(item->first);
    ProbeRequest probe = item->second.probe.takeBack();
    erase(item);
    m_isShort = !m_items.empty();
    if (m_isShort)
        m_waiting.push_front(std::move(probe));
    else
        probe.promise.setResult(Health::unknown());
}

} // namespace portolan
