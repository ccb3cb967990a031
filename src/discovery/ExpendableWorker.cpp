#include "ExpendableWorker.h"

#include <QSet>

#include <condition_variable>
#include <mutex>
#include <system_error>

namespace {

constexpr int maxTimeOuts = 2;

/// What hangs at present. Never destroyed: a stuck thread may come back while the program exits.
struct Stuck
{
    std::mutex mutex;
    QSet<QString> subjects;
};

Stuck &stuck()
{
    static auto *const all = new Stuck;
    return *all;
}

bool isStuck(const QString &about)
{
    const std::lock_guard lock(stuck().mutex);
    return stuck().subjects.contains(about);
}

void setStuck(const QString &about)
{
    const std::lock_guard lock(stuck().mutex);
    stuck().subjects.insert(about);
}

void setFree(const QString &about)
{
    const std::lock_guard lock(stuck().mutex);
    stuck().subjects.remove(about);
}

} // namespace

/// What a worker and its thread share. A thread that was given up keeps it alive alone.
struct ExpendableWorker::Lane
{
    std::mutex mutex;
    std::condition_variable_any changed;
    std::function<void()> work;       ///< empty: none under way
    bool closed = false;              ///< no more work will come
    std::optional<QString> givenUpOn; ///< what the work is about that nobody waits for any more

    /// The thread's life.
    void serve()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return work || closed; });
            if (!work)
                return;
            lock.unlock();
            work();
            lock.lock();
            work = nullptr;
            changed.notify_all();
            if (givenUpOn)
                return setFree(*givenUpOn);
        }
    }

    /// Whether the thread has done `job` in time. If not, it is given up and of no more use.
    bool perform(const QString &about, std::function<void()> job, std::chrono::milliseconds deadline,
                 const std::stop_token &stop)
    {
        std::unique_lock lock(mutex);
        work = std::move(job);
        changed.notify_all();
        if (changed.wait_for(lock, stop, deadline, [this] { return !work; }))
            return true;
        givenUpOn = about;
        setStuck(about);
        return false;
    }

    void close()
    {
        const std::lock_guard lock(mutex);
        closed = true;
        changed.notify_all();
    }
};

ExpendableWorker::ExpendableWorker(std::chrono::milliseconds deadline, std::stop_token stop)
    : m_deadline(deadline)
    , m_stop(std::move(stop))
{}

ExpendableWorker::~ExpendableWorker()
{
    if (!m_lane)
        return;
    m_lane->close();
    m_thread.join();
}

bool ExpendableWorker::finish(const QString &about, std::function<void()> work)
{
    if (m_timeOuts >= maxTimeOuts || m_stop.stop_requested() || isStuck(about) || !openLane())
        return false;
    if (m_lane->perform(about, std::move(work), m_deadline, m_stop))
        return true;
    ++m_timeOuts;
    m_thread.detach();
    m_lane.reset();
    return false;
}

bool ExpendableWorker::openLane()
{
    if (m_lane)
        return true;
    auto lane = std::make_shared<Lane>();
    try {
        m_thread = std::thread([lane] { lane->serve(); });
    } catch (const std::system_error &) {
        return false; // no more threads to be had
    }
    m_lane = std::move(lane);
    return true;
}
