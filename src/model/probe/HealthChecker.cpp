// SPDX-License-Identifier: MIT
#include "HealthChecker.h"

#include "ProbeSet.h"

#include <limits>
#include <system_error>

#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>

namespace portolan {

namespace {

// The program's signals are handled by its other threads, and a broken TLS connection must not raise SIGPIPE.
// Threads started from this one inherit the mask.
void prepareThread()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    pthread_setname_np(pthread_self(), "portolan-probes");
}

} // namespace

HealthChecker::HealthChecker() = default;

HealthChecker::~HealthChecker()
{
    if (m_thread.joinable()) {
        m_thread.request_stop();
        wake();
        m_thread.join();
    }
}

QFuture<Health> HealthChecker::check(qint64 port)
{
    HealthPromise promise;
    QFuture<Health> result = promise.future();
    if (port < 0 || port > std::numeric_limits<quint16>::max()) {
        promise.setResult(Health::unknown());
        return result;
    }
    const std::lock_guard lock(m_mutex);
    if (!m_thread.joinable() && !start()) {
        promise.setResult(Health::unknown());
        return result;
    }
    m_requests.push_back({quint16(port), std::move(promise)});
    if (m_requests.size() == 1)
        wake();
    return result;
}

// If no thread or descriptor is available, the next probe tries again.
bool HealthChecker::start()
{
    m_wakeFd = FileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    m_probes = std::make_unique<ProbeSet>(m_wakeFd.get());
    if (!m_probes->isValid())
        return false;
    try {
        m_thread = std::jthread([this](const std::stop_token &stop) { run(stop); });
    } catch (const std::system_error &) {
        return false;
    }
    return true;
}

void HealthChecker::run(const std::stop_token &stop)
{
    prepareThread();
    while (!stop.stop_requested()) {
        if (!m_probes->advance())
            continue;
        for (ProbeRequest &probe : takeRequests())
            m_probes->add(std::move(probe));
    }
}

std::vector<ProbeRequest> HealthChecker::takeRequests()
{
    const std::lock_guard lock(m_mutex);
    eventfd_t count = 0;
    eventfd_read(m_wakeFd.get(), &count);
    return std::exchange(m_requests, {});
}

void HealthChecker::wake() const
{
    eventfd_write(m_wakeFd.get(), 1);
}

} // namespace portolan
