#include "Escalation.h"

#include <csignal>

namespace portolan {

Escalation::Escalation(std::chrono::milliseconds grace)
    : m_grace(grace)
    , m_thread([this](const std::stop_token &stop) { run(stop); })
{}

void Escalation::add(std::shared_ptr<const ProcessHandle> process)
{
    const std::lock_guard lock(m_mutex);
    m_pending.push_back({std::chrono::steady_clock::now() + m_grace, std::move(process)});
    m_added.notify_one();
}

void Escalation::run(const std::stop_token &stop)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_added.wait(lock, stop, [this] { return !m_pending.empty(); });
        if (stop.stop_requested())
            return;
        m_added.wait_until(lock, stop, m_pending.front().due, [] { return false; });
        if (stop.stop_requested())
            return;
        const ProcessHandle &process = *m_pending.front().process;
        if (process.send(0))
            process.send(SIGKILL);
        m_pending.pop_front();
    }
}

} // namespace portolan
