#pragma once

#include "FileDescriptor.h"
#include "HealthPromise.h"
#include "ProbeSet.h"

#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace portolan {

/// A thread that probes any number of ports at once. It starts with the first probe and then sleeps without a
/// wake-up while there is none.
class ProbeLoop
{
public:
    ProbeLoop() = default;
    /// Ends the thread; probes still under way finish as unreachable.
    ~ProbeLoop();
    ProbeLoop(const ProbeLoop &) = delete;
    ProbeLoop &operator=(const ProbeLoop &) = delete;

    /// The outcome of probing `port`. Any thread; returns at once. The future finishes on the loop's thread.
    [[nodiscard]] QFuture<Health> probe(quint16 port);

private:
    struct Request
    {
        quint16 port;
        HealthPromise promise;
    };

    [[nodiscard]] bool start();
    void run(const std::stop_token &stop);
    [[nodiscard]] std::deque<Request> takeRequests();
    void wake() const;

    std::mutex m_mutex;
    std::deque<Request> m_requests; // guarded by m_mutex
    FileDescriptor m_wakeFd;
    std::unique_ptr<ProbeSet> m_probes;
    std::jthread m_thread;
};

} // namespace portolan
