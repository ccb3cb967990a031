// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "Probe.h"

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace portolan {

class ProbeSet;

/// Asks whether something answers HTTP on a local port, with which status code and how fast. All probes run
/// on one thread, which starts with the first of them and does not wake up while there is none.
class HealthChecker
{
public:
    HealthChecker();
    /// Ends the thread without waiting for any server; probes still under way finish as unreachable.
    ~HealthChecker();
    HealthChecker(const HealthChecker &) = delete;
    HealthChecker &operator=(const HealthChecker &) = delete;

    /// Probes http://127.0.0.1:`port`/ with a HEAD request and, where that gets no response, a GET. Any
    /// thread; returns at once. The future always finishes with a value, usually on the checker's thread,
    /// within 3 s per request from the probe's start: `healthy` for any HTTP response, `unreachable` for
    /// none, `unknown` if `port` is no port number or no descriptor is available. ProbeSet limits how many
    /// probes run at a time; the others wait. With PORTOLAN_PROBE=localhost in the environment, a request
    /// that 127.0.0.1 refuses goes to ::1.
    [[nodiscard]] QFuture<Health> check(qint64 port);

private:
    [[nodiscard]] bool start();
    void run(const std::stop_token &stop);
    [[nodiscard]] std::vector<ProbeRequest> takeRequests();
    void wake() const;

    std::mutex m_mutex;
    std::vector<ProbeRequest> m_requests; // guarded by m_mutex
    FileDescriptor m_wakeFd;
    std::unique_ptr<ProbeSet> m_probes;
    std::jthread m_thread;
};

} // namespace portolan
