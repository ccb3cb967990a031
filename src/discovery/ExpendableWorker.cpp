#include "ExpendableWorker.h"

#include <QSet>

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <vector>

namespace portolan {

namespace {

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
    using Clock = std::chrono::steady_clock;

    std::mutex mutex;
    std::condition_variable_any changed;
    std::vector<std::function<void()>> queue;
    size_t done = 0;                  ///< how many of the queue
    Clock::time_point begun;          ///< when the one under way began
    bool closed = false;              ///< no more work will come
    std::optional<QString> givenUpOn; ///< what the work is about that nobody waits for any more

    [[nodiscard]] bool isIdle() const { return done == queue.size(); }

    /// The thread's life.
    void serve()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return !isIdle() || closed; });
            if (isIdle())
                return;
            while (!isIdle()) {
                const std::function<void()> work = std::move(queue[done]);
                begun = Clock::now();
                lock.unlock();
                work();
                lock.lock();
                if (givenUpOn)
                    return setFree(*givenUpOn);
                ++done;
            }
            changed.notify_all();
        }
    }

    /// Waits until the thread has done all `jobs` and returns how many it has. If not all, the next one took
    /// too long or a stop was requested meanwhile: the thread is given up and of no more use.
    size_t perform(const std::vector<Job *> &jobs, std::chrono::milliseconds deadline,
                   const std::stop_token &stop)
    {
        std::unique_lock lock(mutex);
        queue.clear();
        for (const Job *job : jobs)
            queue.push_back(job->work);
        done = 0;
        begun = Clock::now();
        changed.notify_all();
        // The thread says nothing between two jobs, so the one that is waited for has to be looked up.
        while (!stop.stop_requested() && Clock::now() < begun + deadline) {
            if (changed.wait_until(lock, stop, begun + deadline, [this] { return isIdle(); }))
                return done;
        }
        givenUpOn = jobs[done]->about;
        setStuck(*givenUpOn);
        return done;
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

void ExpendableWorker::finish(std::vector<Job> &jobs)
{
    for (auto next = jobs.begin(); m_timeOuts < maxTimeOuts && !m_stop.stop_requested();) {
        std::vector<Job *> wanted;
        for (auto job = next; job != jobs.end(); ++job) {
            if (!isStuck(job->about))
                wanted.push_back(&*job);
        }
        if (wanted.empty() || !openLane())
            return;
        const size_t done = m_lane->perform(wanted, m_deadline, m_stop);
        for (size_t i = 0; i < done; ++i)
            wanted[i]->isDone = true;
        if (done == wanted.size())
            return;
        ++m_timeOuts;
        m_thread.detach();
        m_lane.reset();
        next = jobs.begin() + (wanted[done] - jobs.data()) + 1;
    }
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

} // namespace portolan
