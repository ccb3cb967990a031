#include "AbandonableWorker.h"

#include <QSet>

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace portolan {

/// The subjects on which threads hang at present.
class AbandonableWorker::Hanging
{
public:
    bool contains(const QString &subject)
    {
        const std::lock_guard lock(m_mutex);
        return m_subjects.contains(subject);
    }
    void insert(const QString &subject)
    {
        const std::lock_guard lock(m_mutex);
        m_subjects.insert(subject);
    }
    void remove(const QString &subject)
    {
        const std::lock_guard lock(m_mutex);
        m_subjects.remove(subject);
    }

private:
    std::mutex m_mutex;
    QSet<QString> m_subjects;
};

namespace {

using Clock = std::chrono::steady_clock;

/// What a run and one thread of it share.
struct Batch
{
    std::vector<std::function<void()>> work;

    std::mutex mutex;
    std::condition_variable_any finished;
    size_t done = 0;                        ///< how many of `work`
    Clock::time_point begun = Clock::now(); ///< when the one under way began
    std::function<void()> onReturn;         ///< set when the thread is abandoned

    [[nodiscard]] bool isFinished() const { return done == work.size(); }

    /// The thread's life.
    void perform()
    {
        std::unique_lock lock(mutex);
        while (!isFinished()) {
            begun = Clock::now();
            lock.unlock();
            work[done]();
            lock.lock();
            if (onReturn)
                return onReturn();
            ++done;
        }
        finished.notify_all();
    }

    /// Waits until all is done, but no longer than a stop request or the deadline of one task lets it.
    void wait(std::unique_lock<std::mutex> &lock, const AbandonableWorker::Limits &limits)
    {
        // The thread says nothing between two tasks, so the one that is waited for has to be looked up.
        while (!isFinished() && !limits.stop.stop_requested() && Clock::now() < begun + limits.deadline)
            finished.wait_until(lock, limits.stop, begun + limits.deadline, [this] { return isFinished(); });
    }
};

} // namespace

AbandonableWorker::AbandonableWorker()
    : m_hanging(std::make_shared<Hanging>())
{}

void AbandonableWorker::finish(std::vector<Job> &jobs, const Limits &limits)
{
    auto next = jobs.begin();
    for (int timeOuts = 0; timeOuts < maxTimeOuts && !limits.stop.stop_requested(); ++timeOuts) {
        const auto batch = std::make_shared<Batch>();
        std::vector<Job *> wanted;
        for (; next != jobs.end(); ++next) {
            if (m_hanging->contains(next->subject))
                continue;
            wanted.push_back(&*next);
            batch->work.push_back(next->work);
        }
        if (wanted.empty())
            return;
        std::thread thread;
        try {
            thread = std::thread([batch] { batch->perform(); });
        } catch (const std::system_error &) {
            return; // no more threads to be had
        }

        std::unique_lock lock(batch->mutex);
        batch->wait(lock, limits);
        for (size_t i = 0; i < batch->done; ++i)
            wanted[i]->isDone = true;
        if (batch->isFinished()) {
            lock.unlock();
            thread.join();
            return;
        }
        const Job *const stuck = wanted[batch->done];
        m_hanging->insert(stuck->subject);
        batch->onReturn = [hanging = m_hanging, subject = stuck->subject] { hanging->remove(subject); };
        thread.detach();
        next = jobs.begin() + (stuck - jobs.data()) + 1;
    }
}

} // namespace portolan
