#pragma once

#include "ProcessHandle.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

namespace portolan {

/// Kills processes that had their time to end by themselves. Any thread; needs no event loop. Destroying it
/// spares those whose time is not over.
class Escalation
{
public:
    explicit Escalation(std::chrono::milliseconds grace);

    /// Sends SIGKILL to `process` after the grace time, if it still is there.
    void add(std::shared_ptr<const ProcessHandle> process);

private:
    struct Pending
    {
        std::chrono::steady_clock::time_point due;
        std::shared_ptr<const ProcessHandle> process;
    };

    void run(const std::stop_token &stop);

    const std::chrono::milliseconds m_grace;
    std::mutex m_mutex;
    std::condition_variable_any m_added;
    std::deque<Pending>
        m_pending;         ///< guarded by m_mutex; in the order of their time, for all have the same grace
    std::jthread m_thread; ///< the last member: ends before what it uses
};

} // namespace portolan
